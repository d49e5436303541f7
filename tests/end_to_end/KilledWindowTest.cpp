#include "AccessibleDesktop.h"
#include "reliability/RunLength.h"
#include "reliability/ServiceProcess.h"
#include "reliability/StorePromises.h"
#include "reliability/WorkedSettings.h"
#include "store/DatabaseManager.h"
#include "support/TemporaryHome.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

constexpr int longest = 60'000;

} // namespace

/// The program itself, worked over the accessibility bus as a user does, and killed at random moments. Each
/// start finds what the kill before left, and everything that was promised is looked up. QUILMORA_RUN_COUNT
/// is the number of kills, QUILMORA_RUN_SEED makes a run like a former one.
class KilledWindowTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingThatWasPromisedIsLost();
    void cleanupTestCase();

private:
    void startProgram();
    void killAfter(int milliseconds);
    void killAtStart();
    void killInGeneration(int number, bool atFile);
    void killInSettings(int number);
    void lookUpPromises();

    const TemporaryHome home;
    const ServiceProcess service;
    StorePromises promises;
    QRandomGenerator random;
    QByteArrayList said; ///< Of the covers and settings of the program that was killed last.
    std::unique_ptr<AccessibleDesktop> desktop;
    std::unique_ptr<QProcess> program;
    int startTime = 0; ///< In milliseconds.
    int coverTime = 0;
};

void KilledWindowTest::initTestCase()
{
    const quint32 seed = runSeed();
    qInfo("The seed is %u", seed);
    random.seed(seed);
    const VolcengineConfig settings = workedSettings(service.endpoint(), 1);
    DatabaseManager{QFileInfo{promises.databaseFile()}.path(), promises.coversFolder()}.saveConfig(
        settings.apiURL, settings.apiKey, settings.modelID);
    said = {"saved 1"};
    desktop = std::make_unique<AccessibleDesktop>();
}

void KilledWindowTest::cleanupTestCase()
{
    program.reset();
}

void KilledWindowTest::startProgram()
{
    QElapsedTimer clock;
    clock.start();
    program = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    program->setProcessEnvironment(environment);
    program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program->start(QStringLiteral(QUILMORA_PROGRAM), QStringList{});
    QVERIFY(program->waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(desktop->isShowing(u"视频封面标题文本"_s), longest);
    startTime = static_cast<int>(clock.elapsed());
}

void KilledWindowTest::killAfter(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::microseconds{random.bounded(milliseconds * 1000)});
    QCOMPARE(::kill(static_cast<pid_t>(program->processId()), SIGKILL), 0);
    QVERIFY(program->waitForFinished());
    QCOMPARE(program->readAllStandardOutput(), QByteArray{});
}

void KilledWindowTest::lookUpPromises()
{
    promises.believe(said);
    said.clear();
    QCOMPARE(promises.broken().join(u'\n'), QString{});
}

void KilledWindowTest::killAtStart()
{
    QCOMPARE(::kill(static_cast<pid_t>(program->processId()), SIGKILL), 0);
    QVERIFY(program->waitForFinished());
    program->start(QStringLiteral(QUILMORA_PROGRAM), QStringList{});
    QVERIFY(program->waitForStarted());
    killAfter(startTime);
}

void KilledWindowTest::killInGeneration(int number, bool atFile)
{
    const QString title = u"w%1"_s.arg(number);
    // Looked at by its time: to list it would take longer than what is to be interrupted.
    const auto changed = [this] {
        return QFileInfo{promises.coversFolder()}.lastModified();
    };
    const QDateTime before = changed();
    QVERIFY(desktop->act(u"经典"_s));
    QVERIFY(desktop->setText(u"视频封面标题文本"_s, title));
    QTRY_VERIFY(desktop->isUsable(u"开始生成封面"_s));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(desktop->act(u"开始生成封面"_s));
    if (atFile) {
        for (const QDeadlineTimer end{longest}; changed() == before;) {
            QVERIFY(!end.hasExpired());
            std::this_thread::yield();
        }
        // Sooner rather than later: most of it happens at the beginning.
        killAfter(random.bounded(1, 30));
        return;
    }
    const QDeadlineTimer end{coverTime > 0 ? random.bounded(coverTime * 3 / 2) : longest};
    while (!end.hasExpired()) {
        if (desktop->isShowing(u"生成成功"_s)) {
            said.append("shown " + title.toUtf8());
            coverTime = std::max(coverTime, static_cast<int>(clock.elapsed()));
            break;
        }
    }
    killAfter(20);
}

void KilledWindowTest::killInSettings(int number)
{
    const VolcengineConfig settings = workedSettings(service.endpoint(), number + 2);
    const QByteArray text = QByteArray::number(number + 2);
    QVERIFY(desktop->act(u"功能设置"_s));
    QTRY_VERIFY(desktop->isShowing(u"保存设置"_s));
    QVERIFY(desktop->setText(u"API URL"_s, settings.apiURL));
    QVERIFY(desktop->setText(u"Model ID"_s, settings.modelID));
    said.append("saving " + text);
    QVERIFY(desktop->act(u"保存设置"_s));
    if (random.bounded(2) == 0) {
        QTRY_VERIFY(desktop->isShowing(u"火山引擎配置已成功保存"_s));
        said.append("saved " + text);
    }
    killAfter(8);
}

void KilledWindowTest::nothingThatWasPromisedIsLost()
{
    const int count = runCount(3);
    for (int number = 0; number < count; ++number) {
        startProgram();
        lookUpPromises();
        switch (number % 4) {
        case 0:
            killInGeneration(number, false);
            break;
        case 1:
            killInGeneration(number, true);
            break;
        case 2:
            killInSettings(number);
            break;
        default:
            killAtStart();
        }
        if (QTest::currentTestFailed()) {
            QFAIL(qPrintable(u"at kill %1"_s.arg(number)));
        }
    }
    startProgram();
    lookUpPromises();
    if (promises.covers() > 0) {
        // Cut short or whole, the history shows them all.
        QVERIFY(desktop->act(u"已生成列表"_s));
        QTRY_VERIFY(desktop->isUsable(u"刷新"_s));
    }
    qInfo("%d kills; %d covers, %d of them shown; %d adopted whole, %d cut short, %d replaced", count,
          promises.covers(), promises.shown(), promises.adopted(), promises.cutShort(), promises.replaced());
    program->terminate();
    QVERIFY(program->waitForFinished());
    QCOMPARE(program->readAllStandardOutput(), QByteArray{});
}

QTEST_GUILESS_MAIN(KilledWindowTest)
#include "KilledWindowTest.moc"
