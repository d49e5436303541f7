#include "reliability/RunLength.h"
#include "reliability/ServiceProcess.h"
#include "reliability/StoreInvariants.h"
#include "reliability/StoreWorkerProcess.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <array>
#include <thread>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

/// What saving settings, a cover's file with its row, and the adoption of many covers take, and a little
/// more.
constexpr std::chrono::microseconds savingSpan = 3ms;
constexpr std::chrono::microseconds fileSpan = 6ms;
constexpr std::chrono::microseconds adoptionSpan = 15ms;

std::chrono::microseconds upTo(std::chrono::microseconds span, QRandomGenerator &random)
{
    return std::chrono::microseconds{random.bounded(static_cast<int>(span.count()))};
}

/// Sooner rather than later: most of it happens at the beginning.
std::chrono::microseconds soonWithin(std::chrono::microseconds span, QRandomGenerator &random)
{
    const double part = random.generateDouble();
    return std::chrono::microseconds{
        static_cast<int>(part * part * part * part * static_cast<double>(span.count()))};
}

/// Looks until it is so, without a pause that would miss the beginning, for as long as the maker runs.
template <typename Condition>
bool watch(StoreWorkerProcess &maker, Condition isSo)
{
    for (int looks = 0; looks < 100'000'000; ++looks) {
        if (isSo()) {
            return true;
        }
        if (looks % 10'000 == 0 && !maker.isRunning()) {
            return isSo();
        }
        std::this_thread::yield();
    }
    return false;
}

/// A moment at which a maker is killed: by chance, but near to what it is to interrupt, or most kills would
/// hit the time in which it waits for the service.
class KillSchedule final
{
public:
    enum class Kind {
        start,    ///< While the program starts.
        adoption, ///< While it adds rows for covers that have none.
        settings, ///< While it saves settings.
        file,     ///< While it writes a cover and its row.
        anywhere  ///< At any time after the start.
    };
    static constexpr int kinds = 5;

    /// How long things take here.
    struct Pace {
        std::chrono::microseconds start;
        std::chrono::microseconds cover;
    };

    KillSchedule(Kind kind, QRandomGenerator &random, const Pace &pace)
        : m_kind{kind},
          m_turn{random.bounded(1, 3)}
    {
        switch (m_kind) {
        case Kind::start:
            m_delay = upTo(pace.start * 5 / 4, random);
            break;
        case Kind::adoption:
            m_delay = upTo(adoptionSpan, random);
            break;
        case Kind::settings:
            m_delay = soonWithin(savingSpan, random);
            break;
        case Kind::file:
            m_delay = soonWithin(fileSpan, random);
            break;
        case Kind::anywhere:
            m_delay = upTo(pace.cover * 5 / 2, random);
            break;
        }
    }

    /// Waits until it has come. False when the maker ended before, or said nothing for long.
    bool waitIn(StoreWorkerProcess &maker, const QString &databaseFolder, const QString &coversFolder) const
    {
        bool hasCome = true;
        if (m_kind == Kind::adoption) {
            // The log beside the database is there from the first of many adoptions to the last.
            hasCome = watch(maker, [&] {
                return QFileInfo::exists(databaseFolder + u"/quilmora.db-wal"_s) || maker.hasSaid("started");
            });
        } else if (m_kind == Kind::settings) {
            hasCome = maker.waitFor("saving " + QByteArray::number(m_turn));
        } else if (m_kind == Kind::file) {
            // Looked at by its time: to list it would take longer than what is to be interrupted.
            const auto changed = [&coversFolder] {
                return QFileInfo{coversFolder}.lastModified();
            };
            hasCome = maker.waitFor("saving " + QByteArray::number(m_turn));
            const QDateTime before = changed();
            hasCome = hasCome && watch(maker, [&] { return changed() != before; });
        } else if (m_kind == Kind::anywhere) {
            hasCome = maker.waitFor("started");
        }
        std::this_thread::sleep_for(m_delay);
        return hasCome;
    }

private:
    const Kind m_kind;
    int m_turn;                        ///< At which of its settings or covers.
    std::chrono::microseconds m_delay; ///< After that.
};

} // namespace

/// Covers are made by the application's own services, against the bundled one, in a process that is killed at
/// random moments. After each kill the store is opened again, by another process, and everything that was
/// promised is looked up in its files. QUILMORA_RUN_COUNT is the number of kills, QUILMORA_RUN_SEED repeats
/// a former run.
class KilledAtAnyMomentTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const quint32 seed = runSeed();
        qInfo("The seed is %u", seed);
        m_random.seed(seed);
        measurePace();
    }

    void nothingThatWasPromisedIsLost()
    {
        const int count = runCount(20);
        for (int number = 0; number < count; ++number) {
            killOnce(number, static_cast<KillSchedule::Kind>(number % KillSchedule::kinds));
            if (QTest::currentTestFailed()) {
                QFAIL(qPrintable(u"at kill %1"_s.arg(number)));
            }
        }
        qInfo(
            "%d kills: %d at the start, %d in adoptions, %d in settings, %d at a file, %d anywhere; %d left "
            "a journal",
            count, m_kills[0], m_kills[1], m_kills[2], m_kills[3], m_kills[4], m_journals);
        qInfo("%d covers, %d of them shown; %d adopted whole, %d truncated, %d replaced by one of the same "
              "name",
              m_invariants.covers(), m_invariants.shown(), m_invariants.adopted(), m_invariants.cutShort(),
              m_invariants.replaced());
        QVERIFY(m_invariants.replaced() <= 1);
    }

private:
    static constexpr int orphansAtOnce = 120;

    /// One run without a kill.
    void measurePace()
    {
        QElapsedTimer clock;
        clock.start();
        StoreWorkerProcess maker{u"whole"_s, 2, m_service.endpoint()};
        maker.go();
        QVERIFY(maker.waitFor("started"));
        m_pace.start = std::chrono::milliseconds{clock.restart()};
        QCOMPARE(maker.waitForEnd(), 0);
        m_pace.cover = std::chrono::milliseconds{clock.elapsed() / 2};
        m_invariants.expect(maker.lines());
        QCOMPARE(m_invariants.violations().join(u'\n'), QString{});
        QCOMPARE(m_invariants.shown(), 2);
    }

    void killOnce(int number, KillSchedule::Kind kind)
    {
        const bool adopts = kind == KillSchedule::Kind::adoption;
        if (adopts) {
            addOrphans();
        }
        StoreWorkerProcess maker{u"k%1"_s.arg(number), 1000, m_service.endpoint()};
        maker.go();
        const QString folder = QFileInfo{m_invariants.databaseFile()}.path();
        const bool hasCome =
            KillSchedule{kind, m_random, m_pace}.waitIn(maker, folder, m_invariants.coversFolder());
        maker.kill();
        QVERIFY2(hasCome, maker.lines().join('\n').constData());
        ++m_kills.at(static_cast<std::size_t>(kind));
        m_journals += QDir{folder}.entryList(QDir::Files).size() > 1 ? 1 : 0;

        StoreWorkerProcess again{u"again"_s, 0, m_service.endpoint()};
        again.go();
        QCOMPARE(again.waitForEnd(), 0);
        QCOMPARE(again.lines(), QByteArrayList{"started"});
        m_invariants.expect(maker.lines());
        if (adopts) {
            checkAndRemoveOrphans();
        }
        QCOMPARE(m_invariants.violations().join(u'\n'), QString{});
    }

    void addOrphans() const
    {
        const QByteArray png = samplePictures::png(samplePictures::picture({8, 8}));
        for (int number = 0; number < orphansAtOnce; ++number) {
            samplePictures::write(m_invariants.coversFolder() + u"/orphan%1.png"_s.arg(number), png);
        }
    }

    /// Each was adopted exactly once.
    void checkAndRemoveOrphans() const
    {
        const auto counts = databaseFile::run(m_invariants.databaseFile(),
                                              "SELECT count(*), count(DISTINCT image_path) FROM history "
                                              "WHERE image_path LIKE '%/orphan%'");
        const QByteArray all = QByteArray::number(orphansAtOnce);
        QCOMPARE(counts.constFirst(), (databaseFile::Row{all, all}));
        // A kill leaves the database with its log; the next kills are to find the journal again.
        databaseFile::run(m_invariants.databaseFile(),
                          "DELETE FROM history WHERE image_path LIKE '%/orphan%';"
                          "PRAGMA journal_mode = DELETE");
        QDir folder{m_invariants.coversFolder()};
        for (const QString &name : folder.entryList({u"orphan*"_s}, QDir::Files)) {
            QVERIFY(folder.remove(name));
        }
    }

    const TemporaryHome m_home;
    StoreInvariants m_invariants;
    ServiceProcess m_service;
    QRandomGenerator m_random;
    KillSchedule::Pace m_pace{};
    std::array<int, KillSchedule::kinds> m_kills{};
    int m_journals = 0; ///< How often a kill left a journal or a log behind.
};

QUILMORA_TEST(KilledAtAnyMomentTest, runCoreTest)
#include "KilledAtAnyMomentTest.moc"
