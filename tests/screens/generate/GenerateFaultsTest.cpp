#include "GenerateScreen.h"
#include "store/CoversFolder.h"

#include <QDir>
#include <QPlainTextEdit>
#include <QTcpServer>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// Faults of the connection as the user meets them: a text, the way back, and a next time that works.
class GenerateFaultsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theScreenIsUsableAfterwards_data();
    void theScreenIsUsableAfterwards();
    void anAddressWhereNobodyAnswersCanBeCorrected();
    void faultsInARowChangeNothing();

private:
    /// Sees the error with `text`, goes back, and makes a cover out of the same form.
    static void goBackAndSucceed(GenerateScreen &screen, const QString &text);
};

void GenerateFaultsTest::goBackAndSucceed(GenerateScreen &screen, const QString &text)
{
    QTRY_VERIFY_WITH_TIMEOUT(screen.shows(u"生成失败"_s), 30'000);
    QCOMPARE(accessible::names(&screen.window), (QStringList{u"生成失败"_s, u"错误信息"_s, u"返回表单"_s}));
    QCOMPARE(screen.find<QPlainTextEdit>(u"错误信息"_s)->toPlainText(), text);
    QVERIFY(screen.database.fetchAllHistory().isEmpty());
    QVERIFY(QDir{coversFolder::path()}.isEmpty());

    click(screen.find(u"返回表单"_s));
    QCOMPARE(screen.titleField()->text(), u"标题"_s);
    click(screen.generateButton());
    QTRY_VERIFY_WITH_TIMEOUT(screen.shows(u"生成成功"_s), 30'000);
    QCOMPARE(screen.database.fetchAllHistory().size(), 1);
}

void GenerateFaultsTest::theScreenIsUsableAfterwards_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const ScriptedAnswer &answer, const QString &text) {
        QTest::newRow(name) << answer << text;
    };
    const QString closed = u"连接已关闭"_s;
    row("torn down", ScriptedAnswer::reset(), closed);
    row("cut", ScriptedAnswer::cut("{\"data\":", 1000), closed);
    row("silent", ScriptedAnswer::silence(), u"请求超时"_s);
    row("no HTTP", {{{"220 mail.example.org ESMTP\r\n"}}}, closed);
    row("empty", ScriptedAnswer::whole({}), {});
    row("a page", ScriptedAnswer::whole("<b>Bad Gateway</b>", "502 Bad Gateway"), u"<b>Bad Gateway</b>"_s);
    row("a challenge",
        ScriptedAnswer::whole(R"({"error":{"code":"AuthenticationError","message":"no"}})",
                              "401 Unauthorized", "WWW-Authenticate: Negotiate\r\n"),
        u"[AuthenticationError] no"_s);
    row("sent elsewhere", ScriptedAnswer::redirect(307, "http://quilmora.invalid/"), u"不安全的重定向"_s);
    row("300 MB", ScriptedAnswer::flood(300'000'000, "HTTP/1.1 200 OK\r\nContent-Length: 300000000\r\n\r\n"),
        u"下载的数据太大，无法保存"_s);
    row("no picture", ScriptedAnswer::whole(R"({"data":[{"b64_json":"bm8gcGljdHVyZQ=="}]})"),
        u"无法解析图片数据"_s);
}

void GenerateFaultsTest::theScreenIsUsableAfterwards()
{
    QFETCH(const ScriptedAnswer, answer);
    QFETCH(const QString, text);
    GenerateScreen screen{
        [answer, good = GenerateScreen::answerWithPicture(),
         isFirst = std::make_shared<std::atomic_bool>(true)](const ReceivedRequest &request) {
            return isFirst->exchange(false) ? answer : good(request);
        },
        {.request = 2s, .download = 2s}};
    screen.generate(u"标题"_s);
    goBackAndSucceed(screen, text);
    QCOMPARE(screen.server.headCount(), 2);
}

void GenerateFaultsTest::anAddressWhereNobodyAnswersCanBeCorrected()
{
    GenerateScreen screen;
    QString port;
    {
        QTcpServer gone;
        QVERIFY(gone.listen(QHostAddress::LocalHost));
        port = QString::number(gone.serverPort());
    }
    const VolcengineConfig good = screen.database.getConfig();
    screen.database.saveConfig(u"http://127.0.0.1:"_s + port, good.apiKey, good.modelID);
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成失败"_s));
    screen.database.saveConfig(good.apiURL, good.apiKey, good.modelID);
    goBackAndSucceed(screen, u"连接被拒绝"_s);
    QCOMPARE(screen.server.headCount(), 1);
}

void GenerateFaultsTest::faultsInARowChangeNothing()
{
    constexpr int faults = 20;
    GenerateScreen screen{[good = GenerateScreen::answerWithPicture(),
                           count = std::make_shared<std::atomic_int>(0)](const ReceivedRequest &request) {
        return (*count)++ < faults ? ScriptedAnswer::reset() : good(request);
    }};
    screen.generate(u"标题"_s);
    for (int count = 1; count < faults; ++count) {
        QTRY_VERIFY(screen.shows(u"生成失败"_s));
        QCOMPARE(screen.find<QPlainTextEdit>(u"错误信息"_s)->toPlainText(), u"连接已关闭"_s);
        click(screen.find(u"返回表单"_s));
        click(screen.generateButton());
        QTRY_COMPARE(screen.server.headCount(), count + 1);
    }
    goBackAndSucceed(screen, u"连接已关闭"_s);
    QCOMPARE(screen.server.headCount(), faults + 1);
}

int main(int argc, char *argv[])
{
    return runScreenTest<GenerateFaultsTest>(argc, argv);
}

#include "GenerateFaultsTest.moc"
