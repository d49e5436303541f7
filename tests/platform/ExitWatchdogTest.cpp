#include "platform/ExitWatchdog.h"

#include "support/ChildProcess.h"
#include "support/TestProgram.h"

#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

class ExitWatchdogTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatDoesNotEndIsEnded()
    {
        const childProcess::Outcome outcome = childProcess::run([] {
            startExitWatchdog(1s, 7);
            while (true) {
                pause();
            }
        });
        QCOMPARE(outcome.exitCode, 7);
        QCOMPARE(outcome.signal, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
    }

    void whatEndsByItselfIsLeftAlone()
    {
        QCOMPARE(childProcess::run([] { startExitWatchdog(9s, 7); }).exitCode, 0);
    }
};

QUILMORA_TEST(ExitWatchdogTest, runCoreTest)
#include "ExitWatchdogTest.moc"
