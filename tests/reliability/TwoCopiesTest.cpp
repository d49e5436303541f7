#include "reliability/RunLength.h"
#include "reliability/ServiceProcess.h"
#include "reliability/StoreInvariants.h"
#include "reliability/StoreWorkerProcess.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

/// Two processes make covers and save settings at once, on one database and one folder. QUILMORA_RUN_COUNT is
/// the number of covers of both together.
class TwoCopiesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noCoverIsLost()
    {
        const ServiceProcess service;
        const int each = (runCount(16) + 1) / 2;
        StoreWorkerProcess first{u"first"_s, each, service.endpoint()};
        // The very first start is for one copy alone: both would add the default settings, one of them in
        // vain.
        QVERIFY(first.waitFor("started"));
        StoreWorkerProcess second{u"second"_s, each, service.endpoint()};
        QVERIFY(second.waitFor("started"));
        first.go();
        second.go();
        QCOMPARE(first.waitForEnd(), 0);
        QCOMPARE(second.waitForEnd(), 0);
        for (const StoreWorkerProcess *maker : {&first, &second}) {
            m_invariants.expect(maker->lines());
        }
        QCOMPARE(m_invariants.violations().join(u'\n'), QString{});
        QCOMPARE(m_invariants.shown(), 2 * each);
        QCOMPARE(m_invariants.covers(), 2 * each);
        QCOMPARE(m_invariants.adopted() + m_invariants.cutShort(), 0);
        qInfo("%d covers of two copies, %d replaced by one of the same name", m_invariants.covers(),
              m_invariants.replaced());
        QVERIFY(m_invariants.replaced() <= 1);
    }

private:
    const TemporaryHome m_home;
    StoreInvariants m_invariants;
};

QUILMORA_TEST(TwoCopiesTest, runCoreTest)
#include "TwoCopiesTest.moc"
