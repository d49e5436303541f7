#include "ProgramFixture.h"
#include "WindowManager.h"
#include "generation/GenerationProbe.h"
#include "reliability/RunLength.h"
#include "reliability/StoreInvariants.h"
#include "reliability/WorkedSettings.h"
#include "support/TestProgram.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTcpServer>

#include <thread>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

/// What the program wrote, without two warnings of Qt about what this test asks on the accessibility bus: an
/// object that went before the question came, and a question that newer versions of the bus library add.
QByteArray withoutLateReplies(const QByteArray &said)
{
    QByteArray kept;
    for (const QByteArray &line : said.split('\n')) {
        if (!line.isEmpty() &&
            !line.startsWith("qt.accessibility.atspi: WARNING Qt AtSpiAdaptor: Accessible invalid: ") &&
            !line.startsWith("qt.accessibility.atspi: Could not find accessible on path: ") &&
            !(line.startsWith("qt.accessibility.atspi: ") && line.contains("\"GetApplicationBusAddress\""))) {
            kept += line + '\n';
        }
    }
    return kept;
}

constexpr qsizetype firstPart = 1'000'000;

/// A good response of which half comes at once, and the rest in more than two minutes.
ScriptedResponse slowResponse()
{
    const QByteArray body = R"({"data":[{"b64_json":")" + QByteArray(2 * firstPart, 'A') + R"("}]})";
    ScriptedResponse response = ScriptedResponse::dripping(body.sliced(firstPart), 1000, 150ms);
    response.pieces.prepend({"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
                             "\r\n\r\n" + body.first(firstPart)});
    response.pieces.remove(1);
    return response;
}

/// What the service does is asked for by the title, whose end is a number.
ScriptedResponse responseTo(const ReceivedRequest &request)
{
    // Far larger than any cover, so that it takes its time to decode.
    static const QByteArray large = pictureAnswer({5000, 4000});
    if (request.path() == "/picture" || request.body.contains("「silent")) {
        return ScriptedResponse::silence();
    }
    if (request.body.contains("「slow")) {
        return slowResponse();
    }
    if (request.body.contains("「address")) {
        return ScriptedResponse::whole(addressAnswer("http://" + request.header("Host") + "/picture"));
    }
    if (request.body.contains("「broken")) {
        return ScriptedResponse::whole("Bad Gateway", "502 Bad Gateway");
    }
    if (request.body.contains("「large")) {
        return ScriptedResponse::keptAlive(large);
    }
    return ScriptedResponse::whole(pictureAnswer());
}

} // namespace

/// The program itself, worked over the accessibility bus and quit in every state, mid-request too. Nothing
/// that it might wait for comes before this test gives up. Each state is left in one way, and with
/// QUILMORA_RUN_COUNT=2 in both.
class QuitTest final : public ProgramFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_deaf.listen(QHostAddress::LocalHost));
        const QByteArray png = samplePictures::png(samplePictures::picture({1280, 960}));
        for (int number = 1000; number < 1020; ++number) {
            samplePictures::write(
                m_invariants.coversFolder() + u"/cover_20200101_000000_%1.png"_s.arg(number), png);
        }
        saveEndpoint(m_server.url().toString());
        m_said = {"saved 1"};
        // Every desktop has one; Qt says so where there is none.
        const QString runtime = m_home.path(u"run"_s);
        QVERIFY(QDir{}.mkdir(runtime) &&
                QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        m_environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
    }

    void quitting_data()
    {
        const DataRows<qsizetype, Way> row{"state", "way"};
        const bool inBothWays = runCount(1) > 1;
        const QList<State> all = states();
        for (qsizetype index = 0; index < all.size(); ++index) {
            const State &state = all.at(index);
            for (const Way way : {closing, key}) {
                if (way == state.usual || (inBothWays && (state.all & way) != 0)) {
                    row(state.name + QByteArray{way == key ? ", key" : ", closed"}, index, way);
                }
            }
        }
    }

    void quitting()
    {
        QFETCH(const qsizetype, state);
        QFETCH(const Way, way);
        saveEndpoint(m_server.url().toString());
        (this->*states().at(state).bringAbout)();
        if (QTest::currentTestFailed()) {
            return;
        }
        QCOMPARE(m_program->state(), QProcess::Running);
        quit(way);
        if (QTest::currentTestFailed()) {
            return;
        }
        QCOMPARE(withoutLateReplies(m_program->readAllStandardError()), QByteArray{});
        QCOMPARE(m_program->readAllStandardOutput(), QByteArray{});
        QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_program->exitCode(), 0);
        m_invariants.expect(m_said);
        m_said.clear();
        QCOMPARE(m_invariants.violations().join(u'\n'), QString{});
    }

private:
    enum Way : unsigned { closing = 1, key = 2 };
    struct State {
        const char *name;
        void (QuitTest::*bringAbout)();
        Way usual;
        unsigned all = closing | key; ///< Qt's own panels do not know the key.
    };

    static QList<State> states()
    {
        return {{"its window appears", &QuitTest::windowAppears, closing},
                {"just started", &QuitTest::started, key},
                {"the form is filled", &QuitTest::formFilled, closing},
                {"a photo is being chosen", &QuitTest::choosingPhoto, closing, closing},
                {"the request is being sent", &QuitTest::uploading, key},
#ifndef QUILMORA_SIGNALS_ARE_HELD
                {"the service's name is looked up", &QuitTest::lookingUpName, closing},
#endif
                {"the service is silent", &QuitTest::waitingForResponse, key},
                {"the response is coming", &QuitTest::takingResponse, closing},
                {"the picture's address is silent", &QuitTest::fetchingPicture, key},
                {"the response is being decoded", &QuitTest::decodingResponse, closing},
                {"a result is shown", &QuitTest::resultShown, key},
                {"a place for it is being chosen", &QuitTest::savingCover, closing, closing},
                {"an error is shown", &QuitTest::errorShown, closing},
                {"the history is filling", &QuitTest::historyFilling, closing},
                {"a preview is open", &QuitTest::previewOpen, key},
                {"the settings say that they are saved", &QuitTest::alertOpen, key},
                {"the help says what was copied", &QuitTest::addressCopied, closing}};
    }

    void redirect(QProcess & /*program*/) override {}

    void saveEndpoint(const QString &endpoint) const
    {
        saveSettings(workedSettings(endpoint, m_settingsNumber));
    }

    void quit(Way way)
    {
        const qint64 process = m_program->processId();
        if (way == key) {
            QVERIFY(!m_windows.windowsOf(process).isEmpty());
            m_windows.pressWithControl(m_windows.windowsOf(process).constFirst(), 'q');
        }
        // One window after the other, each asked once.
        WindowManager::Window asked = 0;
        for (const QDeadlineTimer end{longest}; !m_program->waitForFinished(10);) {
            QVERIFY2(!end.hasExpired(), "It does not end");
            const auto left = m_windows.windowsOf(process);
            if (way == closing && !left.isEmpty() && left.constFirst() != asked) {
                asked = left.constFirst();
                m_windows.requestClose(asked);
            }
        }
    }

    void generateKind(const QString &kind)
    {
        started();
        m_server.forgetRequests();
        generate(kind + QString::number(++m_covers));
    }

    void windowAppears()
    {
        start();
        QTRY_VERIFY_WITH_TIMEOUT(!m_windows.windowsOf(m_program->processId()).isEmpty(), longest);
    }

    void started()
    {
        windowAppears();
        waitFor(titleField);
    }

    void formFilled()
    {
        started();
        QVERIFY(m_desktop.setText(titleField, u"标题"_s));
        QVERIFY(m_desktop.setText(u"背景场景"_s, u"海边"_s));
        QTRY_VERIFY(m_desktop.isUsable(generateButton));
    }

    void waitingForResponse()
    {
        generateKind(u"silent"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(), 1, longest);
    }

    void takingResponse()
    {
        const qint64 before = m_server.sentBytes();
        generateKind(u"slow"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_server.sentBytes() > before + firstPart, longest);
    }

    void fetchingPicture()
    {
        generateKind(u"address"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(), 2, longest);
    }

    void decodingResponse()
    {
        generateKind(u"large"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_server.requestCount(), 1, longest);
        // Let go by the program as soon as it has taken the whole response.
        for (const QDeadlineTimer end{longest}; m_server.openConnections() > 0; std::this_thread::yield()) {
            QVERIFY(!end.hasExpired());
        }
        m_said.append("shown large" + QByteArray::number(m_covers));
    }

    void uploading()
    {
        // Of noise, which does not get small in the request: the connection cannot take all of it.
        QImage noise{1600, 1200, QImage::Format_RGB32};
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(noise.bits()),
                                              noise.sizeInBytes() / qsizetype{sizeof(quint32)});
        const QString photo = samplePictures::write(m_home.path(u"noise.jpg"_s), samplePictures::jpeg(noise));
        saveEndpoint(u"http://127.0.0.1:%1/"_s.arg(m_deaf.serverPort()));
        started();
        choosePicture(photo);
        generate(u"标题"_s);
        QVERIFY(m_deaf.waitForNewConnection(longest));
    }

    void lookingUpName()
    {
        const QString mark = m_home.path(u"looked-up"_s);
        QFile::remove(mark);
        m_environment.insert(u"LD_PRELOAD"_s, QStringLiteral(QUILMORA_SILENT_NAMES));
        m_environment.insert(u"QUILMORA_LOOKUP_MARK"_s, mark);
        saveEndpoint(u"http://images.quilmora.example/"_s);
        generateKind(u"nobody"_s);
        m_environment.remove(u"LD_PRELOAD"_s);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(mark), longest);
    }

    void resultShown()
    {
        generateKind(u"good"_s);
        waitFor(u"生成成功"_s);
        m_said.append("shown good" + QByteArray::number(m_covers));
    }

    void errorShown()
    {
        generateKind(u"broken"_s);
        waitFor(u"生成失败"_s);
    }

    void choosingPhoto()
    {
        started();
        press(u"人脸形象（必填）"_s);
        waitFor(u"选择图片"_s);
    }

    void savingCover()
    {
        resultShown();
        press(u"保存图片"_s);
        waitFor(u"保存封面图片"_s);
    }

    void historyFilling()
    {
        started();
        press(u"已生成列表"_s);
        waitFor(u"刷新"_s);
    }

    void previewOpen()
    {
        historyFilling();
        QTRY_VERIFY(m_desktop.act(u"(历史图片，已自动补录)"_s));
        waitFor(u"关闭预览"_s);
    }

    void alertOpen()
    {
        started();
        const VolcengineConfig settings = workedSettings(m_server.url().toString(), ++m_settingsNumber);
        press(u"功能设置"_s);
        waitFor(u"保存设置"_s);
        QVERIFY(m_desktop.setText(u"API URL"_s, settings.apiURL));
        QVERIFY(m_desktop.setText(u"Model ID"_s, settings.modelID));
        press(u"保存设置"_s);
        waitFor(u"火山引擎配置已成功保存"_s);
        m_said.append("saving " + QByteArray::number(m_settingsNumber));
        m_said.append("saved " + QByteArray::number(m_settingsNumber));
    }

    void addressCopied()
    {
        const QString website = QStringLiteral(QUILMORA_WEBSITE);
        started();
        press(u"帮助说明"_s);
        QTRY_VERIFY(m_desktop.act(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s));
        waitFor(u"已复制："_s + website);
    }

    ScriptedHttpServer m_server{responseTo};
    QTcpServer m_deaf; ///< Takes connections and reads nothing.
    StoreInvariants m_invariants;
    WindowManager m_windows;
    QByteArrayList m_said; ///< Of covers that came back, and of settings.
    int m_settingsNumber = 1;
    int m_covers = 0;
};

QUILMORA_TEST(QuitTest, runCoreTest)
#include "QuitTest.moc"
