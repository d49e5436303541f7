#include "AccessibleDesktop.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/SamplePictures.h"
#include "support/ScriptedHttpServer.h"
#include "support/TemporaryHome.h"

#include <QProcess>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QByteArray key = "sk-Zq7Xw2Vb9Lk4Jm6Tn1";

bool givesAway(const QByteArray &bytes)
{
    constexpr qsizetype part = 8;
    for (qsizetype start = 0; start + part <= key.size(); ++start) {
        if (bytes.contains(key.mid(start, part))) {
            return true;
        }
    }
    return bytes.contains(key.toBase64());
}

/// One answer of the service after the other, then pictures for ever.
QList<ScriptedAnswer> answers()
{
    return {ScriptedAnswer::whole(R"({"error":{"code":"AuthenticationError","message":"no"}})",
                                  "401 Unauthorized", "WWW-Authenticate: Negotiate\r\n"),
            ScriptedAnswer::whole("<html>Bad Gateway</html>", "502 Bad Gateway"),
            ScriptedAnswer::reset(),
            ScriptedAnswer::cut("{", 10),
            ScriptedAnswer{{{"220 mail.example.org ESMTP\r\n"}}},
            ScriptedAnswer::redirect(307, "http://localhost:1/"),
            ScriptedAnswer::whole(R"({"data":[{"b64_json":"eA=="}]})")};
}

} // namespace

/// The program as a user starts it, whose output somebody keeps and whose texts somebody else reads.
class ProgramSecrecyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingOnScreenHoldsTheKey();
    void whatTheServiceQuotesIsShownAsItIs();
    void whatItWritesDoesNotHoldTheKey_data();
    void whatItWritesDoesNotHoldTheKey();

private:
    void lookEverywhere();

    TemporaryHome home;
    ScriptedHttpServer server{[left = answers()](const ReceivedRequest &request) mutable {
        if (request.body.contains("quote me")) {
            return ScriptedAnswer::whole(request.header("Authorization"), "401 Unauthorized");
        }
        const QByteArray picture = samplePictures::png(samplePictures::picture({64, 36}));
        return left.isEmpty()
                   ? ScriptedAnswer::whole(R"({"data":[{"b64_json":")" + picture.toBase64() + R"("}]})")
                   : left.takeFirst();
    }};
    QProcess program;
    std::unique_ptr<AccessibleDesktop> desktop;
};

void ProgramSecrecyTest::initTestCase()
{
    DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
        server.url().toString(), QString::fromLatin1(key), u"m"_s);
    desktop = std::make_unique<AccessibleDesktop>();
    desktop->listen();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    // Whatever QNetworkAccessManager has to say about what it does.
    environment.insert(u"QT_LOGGING_RULES"_s, u"qt.network*.debug=true"_s);
    program.setProcessEnvironment(environment);
    program.setStandardOutputFile(home.path(u"output"_s));
    program.setStandardErrorFile(home.path(u"errors"_s));
    program.start(QStringLiteral(QUILMORA_PROGRAM), QStringList{});
    QVERIFY(program.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"视频封面标题文本"_s), 30000);
}

void ProgramSecrecyTest::lookEverywhere()
{
    const QStringList texts = desktop->texts();
    QVERIFY(texts.size() > 10);
    const QStringList all = texts + desktop->heard();
    for (const QString &text : all) {
        QVERIFY2(!givesAway(text.toUtf8()), qPrintable(text));
    }
}

void ProgramSecrecyTest::nothingOnScreenHoldsTheKey()
{
    const qsizetype faults = answers().size();
    QVERIFY(desktop->setText(u"视频封面标题文本"_s, u"标题"_s));
    for (qsizetype count = 0; count <= faults; ++count) {
        QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
        QVERIFY(desktop->act(u"开始生成封面"_s));
        const QString heading = count < faults ? u"生成失败"_s : u"生成成功"_s;
        QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(heading), 30000);
        lookEverywhere();
        // A press that closes the section may be answered too late to be told from a failed one.
        const auto isBack = [this] {
            return desktop->isShowing(u"开始生成封面"_s) || (desktop->act(u"返回表单"_s), false);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isBack(), 20000);
    }
    for (const QString &tab : {u"已生成列表"_s, u"功能设置"_s, u"帮助说明"_s}) {
        QVERIFY(desktop->act(tab));
        QTRY_VERIFY(desktop->isChecked(tab) || desktop->isShowing(tab));
        lookEverywhere();
    }
    // The address in the settings comes into its field in the same way as the key.
    QTRY_VERIFY(desktop->heard().contains(server.url().toString()));
    lookEverywhere();
    QCOMPARE(server.headCount(), faults + 1);
    const QList<ReceivedRequest> requests = server.requests();
    for (const ReceivedRequest &request : requests) {
        QCOMPARE(request.header("Authorization"), "Bearer " + key);
        QVERIFY(!givesAway(request.path() + request.body));
    }
}

void ProgramSecrecyTest::whatTheServiceQuotesIsShownAsItIs()
{
    // The service's words are not the program's to change; it only has to keep them to the screen.
    QVERIFY(desktop->act(u"生成封面"_s));
    QTRY_VERIFY(desktop->setText(u"视频封面标题文本"_s, u"quote me"_s));
    QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
    QVERIFY(desktop->act(u"开始生成封面"_s));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->content(u"错误信息"_s) == u"Bearer "_s + QString::fromLatin1(key),
                             30000);
}

void ProgramSecrecyTest::whatItWritesDoesNotHoldTheKey_data()
{
    QTest::addColumn<QString>("path");
    const QString process = u"/proc/"_s + QString::number(program.processId());
    QTest::newRow("arguments") << process + u"/cmdline"_s;
    QTest::newRow("environment") << process + u"/environ"_s;
    // Behind the program's end.
    QTest::newRow("standard output") << home.path(u"output"_s);
    QTest::newRow("standard error") << home.path(u"errors"_s);
}

void ProgramSecrecyTest::whatItWritesDoesNotHoldTheKey()
{
    QFETCH(const QString, path);
    if (program.state() == QProcess::Running && !path.startsWith(u"/proc/"_s)) {
        program.terminate();
        QVERIFY(program.waitForFinished());
    }
    QFile file{path};
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    QVERIFY2(!givesAway(written), written.constData());
}

QTEST_GUILESS_MAIN(ProgramSecrecyTest)
#include "ProgramSecrecyTest.moc"
