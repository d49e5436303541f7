#include "ProgramFixture.h"
#include "reliability/RunLength.h"
#include "reliability/ServiceProcess.h"
#include "reliability/StoreInvariants.h"
#include "reliability/WorkedSettings.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFileInfo>

#include <csignal>
#include <thread>

using namespace quilmora;
using namespace quilmora::test;

/// The program itself, worked over the accessibility bus as a user does, and killed at random moments. Each
/// start finds what the kill before left, and everything that was promised is looked up. QUILMORA_RUN_COUNT
/// is the number of kills, QUILMORA_RUN_SEED makes a run like a former one.
class KilledWindowTest final : public ProgramFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const quint32 seed = runSeed();
        qInfo("The seed is %u", seed);
        m_random.seed(seed);
        saveSettings(workedSettings(m_service.endpoint(), 1));
        m_said = {"saved 1"};
    }

    void nothingThatWasPromisedIsLost()
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
        if (m_invariants.covers() > 0) {
            // Truncated or whole, the history shows them all.
            press(u"已生成列表"_s);
            QTRY_VERIFY(m_desktop.isUsable(u"刷新"_s));
        }
        qInfo("%d kills; %d covers, %d of them shown; %d adopted whole, %d truncated, %d replaced", count,
              m_invariants.covers(), m_invariants.shown(), m_invariants.adopted(), m_invariants.cutShort(),
              m_invariants.replaced());
        terminate();
        QCOMPARE(m_program->readAllStandardOutput(), QByteArray{});
    }

private:
    void startProgram()
    {
        QElapsedTimer clock;
        clock.start();
        startAndWaitForForm();
        m_startTime = static_cast<int>(clock.elapsed());
    }

    void killAfter(int milliseconds)
    {
        std::this_thread::sleep_for(std::chrono::microseconds{m_random.bounded(milliseconds * 1000)});
        QCOMPARE(::kill(static_cast<pid_t>(m_program->processId()), SIGKILL), 0);
        QVERIFY(m_program->waitForFinished());
        QCOMPARE(m_program->readAllStandardOutput(), QByteArray{});
    }

    void killAtStart()
    {
        QCOMPARE(::kill(static_cast<pid_t>(m_program->processId()), SIGKILL), 0);
        QVERIFY(m_program->waitForFinished());
        start();
        killAfter(m_startTime);
    }

    void killInGeneration(int number, bool atFile)
    {
        const QString title = u"w%1"_s.arg(number);
        // Looked at by its time: to list it would take longer than what is to be interrupted.
        const auto changed = [this] {
            return QFileInfo{m_invariants.coversFolder()}.lastModified();
        };
        const QDateTime before = changed();
        press(u"经典"_s);
        generate(title);
        QElapsedTimer clock;
        clock.start();
        if (atFile) {
            for (const QDeadlineTimer end{longest}; changed() == before;) {
                QVERIFY(!end.hasExpired());
                std::this_thread::yield();
            }
            // Sooner rather than later: most of it happens at the beginning.
            killAfter(m_random.bounded(1, 30));
            return;
        }
        const QDeadlineTimer end{m_coverTime > 0 ? m_random.bounded(m_coverTime * 3 / 2) : longest};
        while (!end.hasExpired()) {
            if (shows(u"生成成功"_s)) {
                m_said.append("shown " + title.toUtf8());
                m_coverTime = std::max(m_coverTime, static_cast<int>(clock.elapsed()));
                break;
            }
        }
        killAfter(20);
    }

    void killInSettings(int number)
    {
        const VolcengineConfig settings = workedSettings(m_service.endpoint(), number + 2);
        const QByteArray text = QByteArray::number(number + 2);
        press(u"功能设置"_s);
        waitFor(u"保存设置"_s);
        QVERIFY(m_desktop.setText(u"API URL"_s, settings.apiURL));
        QVERIFY(m_desktop.setText(u"Model ID"_s, settings.modelID));
        m_said.append("saving " + text);
        press(u"保存设置"_s);
        if (m_random.bounded(2) == 0) {
            waitFor(u"火山引擎配置已成功保存"_s);
            m_said.append("saved " + text);
        }
        killAfter(8);
    }

    void lookUpPromises()
    {
        m_invariants.expect(m_said);
        m_said.clear();
        QCOMPARE(m_invariants.violations().join(u'\n'), QString{});
    }

    const ServiceProcess m_service;
    StoreInvariants m_invariants;
    QRandomGenerator m_random;
    QByteArrayList m_said; ///< Of the covers and settings of the program that was killed last.
    int m_startTime = 0;   ///< In milliseconds.
    int m_coverTime = 0;
};

QUILMORA_TEST(KilledWindowTest, runCoreTest)
#include "KilledWindowTest.moc"
