#include "store/CoversFolder.h"
#include "support/GenerateScreen.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QTcpServer>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// Faults of the connection as the user meets them: a text, the form again, and a next time that works.
class GenerateFaultsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theScreenIsUsableAfterwards_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const ScriptedResponse &response, const QString &text) {
            QTest::newRow(name) << response << text;
        };
        const QString closed = u"连接已关闭"_s;
        row("torn down", ScriptedResponse::reset(), closed);
        row("truncated", ScriptedResponse::cut("{\"data\":", 1000), closed);
        row("silent", ScriptedResponse::silence(), u"请求超时"_s);
        row("no HTTP", {{{"220 mail.example.org ESMTP\r\n"}}}, closed);
        row("empty", ScriptedResponse::whole({}), {});
        row("a page", ScriptedResponse::whole("<b>Bad Gateway</b>", "502 Bad Gateway"),
            u"<b>Bad Gateway</b>"_s);
        row("a challenge",
            ScriptedResponse::whole(R"({"error":{"code":"AuthenticationError","message":"no"}})",
                                    "401 Unauthorized", "WWW-Authenticate: Negotiate\r\n"),
            u"[AuthenticationError] no"_s);
        row("sent elsewhere", ScriptedResponse::redirect(307, "http://quilmora.invalid/"),
            u"不安全的重定向"_s);
        row("300 MB",
            ScriptedResponse::flood(300'000'000, "HTTP/1.1 200 OK\r\nContent-Length: 300000000\r\n\r\n"),
            u"下载的数据太大，无法保存"_s);
        row("no picture", ScriptedResponse::whole(R"({"data":[{"b64_json":"bm8gcGljdHVyZQ=="}]})"),
            u"无法解析图片数据"_s);
    }

    void theScreenIsUsableAfterwards()
    {
        QFETCH(const ScriptedResponse, response);
        QFETCH(const QString, text);
        GenerateScreen screen{
            [response, good = GenerateScreen::respondWithPicture(),
             isFirst = std::make_shared<std::atomic_bool>(true)](const ReceivedRequest &request) {
                return isFirst->exchange(false) ? response : good(request);
            },
            {.request = 2s, .download = 2s}};
        screen.generate();
        goBackAndSucceed(screen, text);
        QCOMPARE(screen.server.headCount(), 2);
    }

    void anAddressWithoutAServerCanBeCorrected()
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
        screen.generate();
        QTRY_VERIFY(screen.shows(texts::failed));
        screen.database.saveConfig(good.apiURL, good.apiKey, good.modelID);
        goBackAndSucceed(screen, u"连接被拒绝"_s);
        QCOMPARE(screen.server.headCount(), 1);
    }

    void faultsInARowChangeNothing()
    {
        constexpr int faults = 20;
        GenerateScreen screen{[good = GenerateScreen::respondWithPicture(),
                               count = std::make_shared<std::atomic_int>(0)](const ReceivedRequest &request) {
            return (*count)++ < faults ? ScriptedResponse::reset() : good(request);
        }};
        screen.generate();
        for (int count = 1; count < faults; ++count) {
            QTRY_VERIFY(screen.shows(texts::failed));
            QCOMPARE(screen.error(), u"连接已关闭"_s);
            screen.goBack();
            click(screen.generateButton());
            QTRY_COMPARE(screen.server.headCount(), count + 1);
        }
        goBackAndSucceed(screen, u"连接已关闭"_s);
        QCOMPARE(screen.server.headCount(), faults + 1);
    }

private:
    /// Sees the error with `text`, goes back, and makes a cover out of the same form.
    static void goBackAndSucceed(GenerateScreen &screen, const QString &text)
    {
        QTRY_VERIFY_WITH_TIMEOUT(screen.shows(texts::failed), 30'000);
        QCOMPARE(accessible::names(&screen.window),
                 (QStringList{texts::failed, texts::errorMessage, texts::back}));
        QCOMPARE(screen.error(), text);
        QVERIFY(screen.database.fetchAllHistory().isEmpty());
        QVERIFY(QDir{coversFolder::path()}.isEmpty());

        screen.goBack();
        QCOMPARE(screen.titleField()->text(), u"标题"_s);
        click(screen.generateButton());
        QTRY_VERIFY_WITH_TIMEOUT(screen.shows(texts::succeeded), 30'000);
        QCOMPARE(screen.database.fetchAllHistory().size(), 1);
    }
};

QUILMORA_TEST(GenerateFaultsTest, runScreenTest)

#include "GenerateFaultsTest.moc"
