#include "platform/PromptEnd.h"

#include "support/ChildProcess.h"

#include <QTest>

#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

class PromptEndTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatDoesNotEndIsEnded();
    void whatEndsByItselfIsLeftAlone();
};

void PromptEndTest::whatDoesNotEndIsEnded()
{
    const childProcess::Outcome outcome = childProcess::run([] {
        endWithin(1s, 7);
        while (true) {
            pause();
        }
    });
    QCOMPARE(outcome.exitCode, 7);
    QCOMPARE(outcome.signal, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
}

void PromptEndTest::whatEndsByItselfIsLeftAlone()
{
    QCOMPARE(childProcess::run([] { endWithin(9s, 7); }).exitCode, 0);
}

QTEST_GUILESS_MAIN(PromptEndTest)
#include "PromptEndTest.moc"
