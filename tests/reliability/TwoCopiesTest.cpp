#include "reliability/MakerProcess.h"
#include "reliability/RunLength.h"
#include "reliability/ServiceProcess.h"
#include "reliability/StorePromises.h"
#include "support/TemporaryHome.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Two processes make covers and save settings at once, on one database and one folder. QUILMORA_RUN_COUNT is
/// the number of covers of both together.
class TwoCopiesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noCoverIsLost();

private:
    const TemporaryHome home;
    StorePromises promises;
};

void TwoCopiesTest::noCoverIsLost()
{
    const ServiceProcess service;
    const int each = (runCount(16) + 1) / 2;
    MakerProcess first{u"first"_s, each, service.endpoint()};
    MakerProcess second{u"second"_s, each, service.endpoint()};
    for (MakerProcess *maker : {&first, &second}) {
        QVERIFY(maker->waitFor("started"));
    }
    first.go();
    second.go();
    QCOMPARE(first.waitForEnd(), 0);
    QCOMPARE(second.waitForEnd(), 0);
    for (const MakerProcess *maker : {&first, &second}) {
        promises.believe(maker->lines());
    }
    QCOMPARE(promises.broken().join(u'\n'), QString{});
    QCOMPARE(promises.shown(), 2 * each);
    QCOMPARE(promises.covers(), 2 * each);
    QCOMPARE(promises.adopted() + promises.cutShort(), 0);
    qInfo("%d covers of two copies, %d replaced by one of the same name", promises.covers(),
          promises.replaced());
    QVERIFY(promises.replaced() <= 1);
}

QTEST_GUILESS_MAIN(TwoCopiesTest)
#include "TwoCopiesTest.moc"
