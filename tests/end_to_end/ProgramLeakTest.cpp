#include "ProgramFixture.h"
#include "generation/GenerationProbe.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

namespace {

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

/// One response of the service after the other, then pictures for ever.
QList<ScriptedResponse> faults()
{
    return {ScriptedResponse::whole(R"({"error":{"code":"AuthenticationError","message":"no"}})",
                                    "401 Unauthorized", "WWW-Authenticate: Negotiate\r\n"),
            ScriptedResponse::whole("<html>Bad Gateway</html>", "502 Bad Gateway"),
            ScriptedResponse::reset(),
            ScriptedResponse::cut("{", 10),
            ScriptedResponse{{{"220 mail.example.org ESMTP\r\n"}}},
            ScriptedResponse::redirect(307, "http://localhost:1/"),
            ScriptedResponse::whole(R"({"data":[{"b64_json":"eA=="}]})")};
}

} // namespace

/// The program as a user starts it, whose output somebody keeps and whose texts somebody else reads.
class ProgramLeakTest final : public ProgramFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        saveSettings({m_server.url().toString(), QString::fromLatin1(key), u"m"_s});
        m_desktop.listen();
        // Whatever QNetworkAccessManager has to say about what it does.
        m_environment.insert(u"QT_LOGGING_RULES"_s, u"qt.network*.debug=true"_s);
        startAndWaitForForm();
    }

    void nothingOnScreenHoldsTheKey()
    {
        const qsizetype faultCount = faults().size();
        for (qsizetype count = 0; count <= faultCount; ++count) {
            generate(u"标题"_s);
            waitFor(count < faultCount ? u"生成失败"_s : u"生成成功"_s);
            lookEverywhere();
            pressUntil(u"返回表单"_s, [this] { return shows(generateButton); });
        }
        for (const QString &tab : {u"已生成列表"_s, u"功能设置"_s, u"帮助说明"_s}) {
            press(tab);
            QTRY_VERIFY(m_desktop.isChecked(tab) || shows(tab));
            lookEverywhere();
        }
        // The address in the settings comes into its field in the same way as the key.
        QTRY_VERIFY(m_desktop.heard().contains(m_server.url().toString()));
        lookEverywhere();
        QCOMPARE(m_server.headCount(), faultCount + 1);
        const QList<ReceivedRequest> requests = m_server.requests();
        for (const ReceivedRequest &request : requests) {
            QCOMPARE(request.header("Authorization"), "Bearer " + key);
            QVERIFY(!givesAway(request.path() + request.body));
        }
    }

    void whatTheServiceQuotesIsShownAsItIs()
    {
        // The service's words are not the program's to change; it only has to keep them to the screen.
        press(u"生成封面"_s);
        waitFor(titleField);
        generate(u"quote me"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_desktop.content(u"错误信息"_s), u"Bearer "_s + QString::fromLatin1(key),
                                  longest);
    }

    void whatItWritesDoesNotHoldTheKey()
    {
        const QString process = u"/proc/%1/"_s.arg(m_program->processId());
        const QByteArray surroundings = contentOf(process + u"cmdline"_s) + contentOf(process + u"environ"_s);
        QVERIFY(surroundings.contains("QT_LOGGING_RULES"));
        QVERIFY2(!givesAway(surroundings), surroundings.constData());
        terminate();
        for (const QString &name : {u"output"_s, u"errors"_s}) {
            const QByteArray written = contentOf(m_home.path(name));
            QVERIFY2(!givesAway(written), written.constData());
        }
    }

private:
    void redirect(QProcess &program) override
    {
        program.setStandardOutputFile(m_home.path(u"output"_s));
        program.setStandardErrorFile(m_home.path(u"errors"_s));
    }

    void lookEverywhere()
    {
        const QStringList texts = m_desktop.texts();
        QVERIFY(texts.size() > 10);
        const QStringList all = texts + m_desktop.heard();
        for (const QString &text : all) {
            QVERIFY2(!givesAway(text.toUtf8()), qPrintable(text));
        }
    }

    static QByteArray contentOf(const QString &path)
    {
        QFile file{path};
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("Cannot read %s", qPrintable(path));
        }
        return file.readAll();
    }

    ScriptedHttpServer m_server{[left = faults()](const ReceivedRequest &request) mutable {
        if (request.body.contains("quote me")) {
            return ScriptedResponse::whole(request.header("Authorization"), "401 Unauthorized");
        }
        return left.isEmpty() ? pictureResponse({64, 36}) : left.takeFirst();
    }};
};

QUILMORA_TEST(ProgramLeakTest, runCoreTest)
#include "ProgramLeakTest.moc"
