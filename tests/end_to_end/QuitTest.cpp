#include "AccessibleDesktop.h"
#include "WindowManager.h"
#include "generation/GenerationProbe.h"
#include "reliability/RunLength.h"
#include "reliability/StorePromises.h"
#include "reliability/WorkedSettings.h"
#include "store/DatabaseManager.h"
#include "support/TemporaryHome.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTest>

#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

/// What the program wrote, without two warnings of Qt about what this test asks on the accessibility bus: an
/// object that went before the question came, and a question that newer versions of the bus library add.
QByteArray withoutLateAnswers(const QByteArray &said)
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

/// Far longer than quitting takes, and far shorter than the service keeps waiting.
constexpr int longest = 60'000;

constexpr qsizetype firstPart = 1'000'000;

/// A good answer of which half comes at once, and the rest in more than two minutes.
ScriptedAnswer slowAnswer()
{
    const QByteArray body = R"({"data":[{"b64_json":")" + QByteArray(2 * firstPart, 'A') + R"("}]})";
    ScriptedAnswer answer = ScriptedAnswer::dripping(body.sliced(firstPart), 1000, 150ms);
    answer.pieces.prepend({"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
                           "\r\n\r\n" + body.first(firstPart)});
    answer.pieces.remove(1);
    return answer;
}

/// What the service does is asked for by the title, whose end is a number.
ScriptedAnswer answerTo(const ReceivedRequest &request)
{
    // Far larger than any cover, so that it takes its time to decode.
    static const QByteArray large = pictureAnswer({5000, 4000});
    if (request.path() == "/picture" || request.body.contains("「silent")) {
        return ScriptedAnswer::silence();
    }
    if (request.body.contains("「slow")) {
        return slowAnswer();
    }
    if (request.body.contains("「address")) {
        return ScriptedAnswer::whole(addressAnswer("http://" + request.header("Host") + "/picture"));
    }
    if (request.body.contains("「broken")) {
        return ScriptedAnswer::whole("Bad Gateway", "502 Bad Gateway");
    }
    if (request.body.contains("「large")) {
        return ScriptedAnswer::keptAlive(large);
    }
    return ScriptedAnswer::whole(pictureAnswer());
}

} // namespace

/// The program itself, worked over the accessibility bus and quit in every state, mid-request too. Nothing
/// that it might wait for comes before this test gives up. Each state is left in one way, and with
/// QUILMORA_RUN_COUNT=2 in both.
class QuitTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void quitting_data();
    void quitting();

private:
    enum Way : unsigned { closing = 1, key = 2 };
    struct State {
        const char *name;
        void (QuitTest::*bringAbout)();
        Way usual;
        unsigned all = closing | key; ///< Qt's own panels do not know the key.
    };
    static QList<State> states();

    void saveSettings(const QString &endpoint);
    void startProgram();
    void quit(Way way);
    void generate(const QString &kind);
    void choosePhoto();

    void appearing();
    void started();
    void formFilled();
    void waitingForAnswer();
    void takingAnswer();
    void fetchingPicture();
    void decodingAnswer();
    void uploading();
    void lookingUpName();
    void resultShown();
    void errorShown();
    void choosingPhoto();
    void savingCover();
    void historyFilling();
    void previewOpen();
    void alertOpen();
    void addressCopied();

    const TemporaryHome home;
    ScriptedHttpServer server{answerTo};
    QTcpServer deaf; ///< Takes connections and reads nothing.
    StorePromises promises;
    std::unique_ptr<AccessibleDesktop> desktop;
    std::unique_ptr<WindowManager> windows;
    std::unique_ptr<QProcess> program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QByteArrayList said; ///< Of covers that came back, and of settings.
    int settingsNumber = 1;
    int covers = 0;
};

QList<QuitTest::State> QuitTest::states()
{
    return {{"its window appears", &QuitTest::appearing, closing},
            {"just started", &QuitTest::started, key},
            {"the form is filled", &QuitTest::formFilled, closing},
            {"a photo is being chosen", &QuitTest::choosingPhoto, closing, closing},
            {"the request is being sent", &QuitTest::uploading, key},
#ifndef QUILMORA_SIGNALS_ARE_HELD
            {"the service's name is looked up", &QuitTest::lookingUpName, closing},
#endif
            {"the service is silent", &QuitTest::waitingForAnswer, key},
            {"the answer is coming", &QuitTest::takingAnswer, closing},
            {"the picture's address is silent", &QuitTest::fetchingPicture, key},
            {"the answer is being decoded", &QuitTest::decodingAnswer, closing},
            {"a result is shown", &QuitTest::resultShown, key},
            {"a place for it is being chosen", &QuitTest::savingCover, closing, closing},
            {"an error is shown", &QuitTest::errorShown, closing},
            {"the history is filling", &QuitTest::historyFilling, closing},
            {"a preview is open", &QuitTest::previewOpen, key},
            {"the settings say that they are saved", &QuitTest::alertOpen, key},
            {"the help says what was copied", &QuitTest::addressCopied, closing}};
}

void QuitTest::initTestCase()
{
    QVERIFY(deaf.listen(QHostAddress::LocalHost));
    const QByteArray png = samplePictures::png(samplePictures::picture({1280, 960}));
    for (int number = 1000; number < 1020; ++number) {
        samplePictures::write(promises.coversFolder() + u"/cover_20200101_000000_%1.png"_s.arg(number), png);
    }
    saveSettings(server.url().toString());
    said = {"saved 1"};
    desktop = std::make_unique<AccessibleDesktop>();
    windows = std::make_unique<WindowManager>();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    // Every desktop has one; Qt says so where there is none.
    const QString runtime = home.path(u"run"_s);
    QVERIFY(QDir{}.mkdir(runtime) &&
            QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    environment.insert(u"XDG_RUNTIME_DIR"_s, runtime);
}

void QuitTest::saveSettings(const QString &endpoint)
{
    const VolcengineConfig settings = workedSettings(endpoint, settingsNumber);
    DatabaseManager{QFileInfo{promises.databaseFile()}.path(), promises.coversFolder()}.saveConfig(
        settings.apiURL, settings.apiKey, settings.modelID);
}

void QuitTest::startProgram()
{
    program = std::make_unique<QProcess>();
    program->setProcessEnvironment(environment);
    program->start(QStringLiteral(QUILMORA_PROGRAM), QStringList{});
    QVERIFY(program->waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(!windows->windowsOf(program->processId()).isEmpty(), longest);
}

void QuitTest::started()
{
    startProgram();
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"视频封面标题文本"_s), longest);
}

void QuitTest::appearing()
{
    startProgram();
}

void QuitTest::formFilled()
{
    started();
    QVERIFY(desktop->setText(u"视频封面标题文本"_s, u"标题"_s));
    QVERIFY(desktop->setText(u"背景场景"_s, u"海边"_s));
    QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
}

void QuitTest::generate(const QString &kind)
{
    started();
    server.forgetRequests();
    QVERIFY(desktop->setText(u"视频封面标题文本"_s, kind + QString::number(++covers)));
    QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
    QVERIFY(desktop->act(u"开始生成封面"_s));
}

void QuitTest::waitingForAnswer()
{
    generate(u"silent"_s);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount(), 1, longest);
}

void QuitTest::takingAnswer()
{
    const qint64 before = server.sentBytes();
    generate(u"slow"_s);
    QTRY_VERIFY_WITH_TIMEOUT(server.sentBytes() > before + firstPart, longest);
}

void QuitTest::fetchingPicture()
{
    generate(u"address"_s);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount(), 2, longest);
}

void QuitTest::decodingAnswer()
{
    generate(u"large"_s);
    QTRY_COMPARE_WITH_TIMEOUT(server.requestCount(), 1, longest);
    // Let go by the program as soon as it has taken the whole answer.
    for (const QDeadlineTimer end{longest}; server.openConnections() > 0; std::this_thread::yield()) {
        QVERIFY(!end.hasExpired());
    }
    said.append("shown large" + QByteArray::number(covers));
}

void QuitTest::choosePhoto()
{
    QVERIFY(desktop->act(u"人脸形象（必填）"_s));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"选择图片"_s), longest);
}

void QuitTest::uploading()
{
    // Of noise, which does not get small in the request: the connection cannot take all of it.
    QImage noise{1600, 1200, QImage::Format_RGB32};
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(noise.bits()),
                                          noise.sizeInBytes() / qsizetype{sizeof(quint32)});
    const QString photo = samplePictures::write(home.path(u"noise.jpg"_s), samplePictures::jpeg(noise));
    saveSettings(u"http://127.0.0.1:%1/"_s.arg(deaf.serverPort()));
    started();
    choosePhoto();
    QTRY_VERIFY(desktop->setText(u"文件名称(N)："_s, photo));
    // A press that closes the panel may be answered too late to be told from a failed one.
    const auto isClosed = [this] {
        return !desktop->isShowing(u"选择图片"_s) || (desktop->act(u"打开(O)"_s), false);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isClosed(), longest);
    QTRY_VERIFY(desktop->isShowing(u"移除"_s));
    QVERIFY(desktop->setText(u"视频封面标题文本"_s, u"标题"_s));
    QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
    QVERIFY(desktop->act(u"开始生成封面"_s));
    QVERIFY(deaf.waitForNewConnection(longest));
}

void QuitTest::lookingUpName()
{
    const QString mark = home.path(u"looked-up"_s);
    QFile::remove(mark);
    environment.insert(u"LD_PRELOAD"_s, QStringLiteral(QUILMORA_SILENT_NAMES));
    environment.insert(u"QUILMORA_LOOKUP_MARK"_s, mark);
    saveSettings(u"http://images.quilmora.example/"_s);
    generate(u"nobody"_s);
    environment.remove(u"LD_PRELOAD"_s);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(mark), longest);
}

void QuitTest::resultShown()
{
    generate(u"good"_s);
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"生成成功"_s), longest);
    said.append("shown good" + QByteArray::number(covers));
}

void QuitTest::errorShown()
{
    generate(u"broken"_s);
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"生成失败"_s), longest);
}

void QuitTest::choosingPhoto()
{
    started();
    choosePhoto();
}

void QuitTest::savingCover()
{
    resultShown();
    QVERIFY(desktop->act(u"保存图片"_s));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"保存封面图片"_s), longest);
}

void QuitTest::historyFilling()
{
    started();
    QVERIFY(desktop->act(u"已生成列表"_s));
    QTRY_VERIFY(desktop->isShowing(u"刷新"_s));
}

void QuitTest::previewOpen()
{
    historyFilling();
    QTRY_VERIFY(desktop->act(u"(历史图片，已自动补录)"_s));
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"关闭预览"_s), longest);
}

void QuitTest::alertOpen()
{
    started();
    const VolcengineConfig settings = workedSettings(server.url().toString(), ++settingsNumber);
    QVERIFY(desktop->act(u"功能设置"_s));
    QTRY_VERIFY(desktop->isShowing(u"保存设置"_s));
    QVERIFY(desktop->setText(u"API URL"_s, settings.apiURL));
    QVERIFY(desktop->setText(u"Model ID"_s, settings.modelID));
    QVERIFY(desktop->act(u"保存设置"_s));
    QTRY_VERIFY(desktop->isShowing(u"火山引擎配置已成功保存"_s));
    said.append("saving " + QByteArray::number(settingsNumber));
    said.append("saved " + QByteArray::number(settingsNumber));
}

void QuitTest::addressCopied()
{
    const QString website = QStringLiteral(QUILMORA_WEBSITE);
    started();
    QVERIFY(desktop->act(u"帮助说明"_s));
    QTRY_VERIFY(desktop->act(u"服务帮助："_s + website + u"（仅技术支持与使用说明）"_s));
    QTRY_VERIFY(desktop->isShowing(u"已复制："_s + website));
}

void QuitTest::quit(Way way)
{
    const qint64 process = program->processId();
    if (way == key) {
        QVERIFY(!windows->windowsOf(process).isEmpty());
        windows->pressWithControl(windows->windowsOf(process).constFirst(), 'q');
    }
    // One window after the other, each asked once.
    WindowManager::Window asked = 0;
    for (const QDeadlineTimer end{longest}; !program->waitForFinished(10);) {
        QVERIFY2(!end.hasExpired(), "It does not end");
        const auto left = windows->windowsOf(process);
        if (way == closing && !left.isEmpty() && left.constFirst() != asked) {
            asked = left.constFirst();
            windows->requestClose(asked);
        }
    }
}

void QuitTest::quitting_data()
{
    QTest::addColumn<qsizetype>("state");
    QTest::addColumn<Way>("way");
    const bool inBothWays = runCount(1) > 1;
    const QList<State> all = states();
    for (qsizetype index = 0; index < all.size(); ++index) {
        const State &state = all.at(index);
        for (const Way way : {closing, key}) {
            if (way == state.usual || (inBothWays && (state.all & way) != 0)) {
                QTest::addRow("%s, %s", state.name, way == key ? "key" : "closed") << index << way;
            }
        }
    }
}

void QuitTest::quitting()
{
    QFETCH(const qsizetype, state);
    QFETCH(const Way, way);
    saveSettings(server.url().toString());
    (this->*states().at(state).bringAbout)();
    if (QTest::currentTestFailed()) {
        return;
    }
    QCOMPARE(program->state(), QProcess::Running);
    quit(way);
    if (QTest::currentTestFailed()) {
        return;
    }
    QCOMPARE(withoutLateAnswers(program->readAllStandardError()), QByteArray{});
    QCOMPARE(program->readAllStandardOutput(), QByteArray{});
    QCOMPARE(program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(program->exitCode(), 0);
    promises.believe(said);
    said.clear();
    QCOMPARE(promises.broken().join(u'\n'), QString{});
}

QTEST_GUILESS_MAIN(QuitTest)
#include "QuitTest.moc"
