#include "reliability/KillMoment.h"
#include "reliability/MakerProcess.h"
#include "reliability/RunLength.h"
#include "reliability/ServiceProcess.h"
#include "reliability/StorePromises.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Covers are made by the application's own services, against the bundled one, in a process that is killed at
/// random moments. After each kill the store is opened again, by another process, and everything that was
/// promised is looked up in its files. QUILMORA_RUN_COUNT is the number of kills, QUILMORA_RUN_SEED makes a
/// run like a former one.
class KilledAtAnyMomentTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingThatWasPromisedIsLost();

private:
    static constexpr int orphansAtOnce = 120;

    void measurePace();
    void killOnce(int number, KillMoment::Kind kind);
    void addOrphans() const;
    void removeOrphans() const;
    void restart();

    const TemporaryHome home;
    StorePromises promises;
    ServiceProcess service;
    QRandomGenerator random;
    KillMoment::Pace pace{};
    std::array<int, KillMoment::kinds> kills{};
    int journals = 0; ///< How often a kill left a journal or a log behind.
};

void KilledAtAnyMomentTest::initTestCase()
{
    const quint32 seed = runSeed();
    qInfo("The seed is %u", seed);
    random.seed(seed);
    measurePace();
}

/// One run that nobody disturbs.
void KilledAtAnyMomentTest::measurePace()
{
    QElapsedTimer clock;
    clock.start();
    MakerProcess maker{u"whole"_s, 2, service.endpoint()};
    maker.go();
    QVERIFY(maker.waitFor("started"));
    pace.start = std::chrono::milliseconds{clock.restart()};
    QCOMPARE(maker.waitForEnd(), 0);
    pace.cover = std::chrono::milliseconds{clock.elapsed() / 2};
    promises.believe(maker.lines());
    QCOMPARE(promises.broken().join(u'\n'), QString{});
    QCOMPARE(promises.shown(), 2);
}

void KilledAtAnyMomentTest::addOrphans() const
{
    const QByteArray png = samplePictures::png(samplePictures::picture({8, 8}));
    for (int number = 0; number < orphansAtOnce; ++number) {
        samplePictures::write(promises.coversFolder() + u"/orphan%1.png"_s.arg(number), png);
    }
}

void KilledAtAnyMomentTest::removeOrphans() const
{
    // A kill leaves the database with its log; the next kills are to find the journal again.
    databaseFile::run(promises.databaseFile(), "DELETE FROM history WHERE image_path LIKE '%/orphan%';"
                                               "PRAGMA journal_mode = DELETE");
    QDir folder{promises.coversFolder()};
    for (const QString &name : folder.entryList({u"orphan*"_s}, QDir::Files)) {
        QVERIFY(folder.remove(name));
    }
}

void KilledAtAnyMomentTest::restart()
{
    MakerProcess again{u"again"_s, 0, service.endpoint()};
    again.go();
    QCOMPARE(again.waitForEnd(), 0);
    QCOMPARE(again.lines(), QByteArrayList{"started"});
}

void KilledAtAnyMomentTest::killOnce(int number, KillMoment::Kind kind)
{
    const bool adopts = kind == KillMoment::Kind::adoption;
    if (adopts) {
        addOrphans();
    }
    MakerProcess maker{u"k%1"_s.arg(number), 1000, service.endpoint()};
    maker.go();
    const QString folder = QFileInfo{promises.databaseFile()}.path();
    const bool hasCome = KillMoment{kind, random, pace}.waitIn(maker, folder, promises.coversFolder());
    maker.kill();
    QVERIFY2(hasCome, maker.lines().join('\n').constData());
    ++kills.at(static_cast<std::size_t>(kind));
    journals += QDir{folder}.entryList(QDir::Files).size() > 1 ? 1 : 0;

    restart();
    promises.believe(maker.lines());
    if (adopts) {
        // Each exactly once.
        const auto counts = databaseFile::run(promises.databaseFile(),
                                              "SELECT count(*), count(DISTINCT image_path) FROM history "
                                              "WHERE image_path LIKE '%/orphan%'");
        const QByteArray all = QByteArray::number(orphansAtOnce);
        QCOMPARE(counts.constFirst(), (databaseFile::Row{all, all}));
        removeOrphans();
    }
    QCOMPARE(promises.broken().join(u'\n'), QString{});
}

void KilledAtAnyMomentTest::nothingThatWasPromisedIsLost()
{
    const int count = runCount(20);
    for (int number = 0; number < count; ++number) {
        killOnce(number, static_cast<KillMoment::Kind>(number % KillMoment::kinds));
        if (QTest::currentTestFailed()) {
            QFAIL(qPrintable(u"at kill %1"_s.arg(number)));
        }
    }
    qInfo("%d kills: %d at the start, %d in adoptions, %d in settings, %d at a file, %d anywhere; %d left a "
          "journal",
          count, kills[0], kills[1], kills[2], kills[3], kills[4], journals);
    qInfo("%d covers, %d of them shown; %d adopted whole, %d cut short, %d replaced by one of the same name",
          promises.covers(), promises.shown(), promises.adopted(), promises.cutShort(), promises.replaced());
    QVERIFY(promises.replaced() <= 1);
}

QTEST_GUILESS_MAIN(KilledAtAnyMomentTest)
#include "KilledAtAnyMomentTest.moc"
