#include "gallery/ApplicationFixture.h"
#include "support/GenerateScreen.h"
#include "support/SamplePictures.h"
#include "support/Texts.h"

#include <QDir>

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <sqlite3.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

int entriesOf(const QString &folder)
{
    return static_cast<int>(
        QDir{folder}.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

/// What this process holds of the system at one moment.
struct ResourceUsage {
    qint64 heapBytes = 0; ///< In use, without the database's cache, which grows to a bound of its own; 0
                          ///< where the system does not tell, negative under the address sanitizer.
    int descriptors = 0;
    int threads = 0;

    static ResourceUsage now()
    {
        ResourceUsage resourceUsage;
#ifdef __GLIBC__
        const struct mallinfo2 heap = mallinfo2();
        resourceUsage.heapBytes = static_cast<qint64>(heap.uordblks + heap.hblkhd) - sqlite3_memory_used();
#endif
        resourceUsage.descriptors = entriesOf(u"/proc/self/fd"_s);
        resourceUsage.threads = entriesOf(u"/proc/self/task"_s);
        return resourceUsage;
    }
};

/// More than caches that have filled and lists that have grown to their size, less than one widget a round.
constexpr qint64 mostHeapGrowth = 300'000;

int rounds(int usual)
{
    const int wanted = qEnvironmentVariableIntValue("QUILMORA_ROUNDS");
    return wanted > 0 ? wanted : usual;
}

} // namespace

/// The window used for a long time holds no more at the end than soon after its start.
class SoakTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changingTabsKeepsNothing()
    {
        gallery::ApplicationFixture stage;
        stage.open();
        repeat(rounds(300), [&stage] {
            for (const NavigationTab tab : NavigationTab::allCases()) {
                stage.click(tab.rawValue());
                QCoreApplication::processEvents();
            }
        });
    }

    void makingCoversKeepsNothing()
    {
        ScriptedHttpServer server{GenerateScreen::respondWithPicture()};
        const TemporaryHome pictures;
        const QString photo =
            samplePictures::writePng(pictures.path(u"face.png"_s), samplePictures::picture({60, 80}));
        gallery::ApplicationFixture stage;
        stage.configure(server.url(), u"key"_s);
        stage.open();
        repeat(rounds(60), [&] {
            stage.type(texts::title, u"标题"_s);
            stage.upload(texts::facePhoto, photo);
            stage.click(texts::start);
            stage.waitFor(texts::savePicture);
            stage.click(texts::back);
            stage.waitFor(texts::title);
            // Sent once.
            QCOMPARE(server.requestCount(), 1);
            server.forgetRequests();
        });
    }

private:
    /// Repeats `round` and compares what is in use after some rounds with what is in use after all.
    static void repeat(int count, const std::function<void()> &round)
    {
        constexpr int warmUp = 30;
        const auto settle = [] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        };
        for (int i = 0; i < warmUp; ++i) {
            round();
        }
        settle();
        const ResourceUsage before = ResourceUsage::now();
        for (int i = 0; i < count; ++i) {
            round();
        }
        settle();
        // A connection's thread ends soon after it.
        QTRY_VERIFY(ResourceUsage::now().threads <= before.threads);
        QTRY_VERIFY(ResourceUsage::now().descriptors <= before.descriptors);
        const qint64 growth = ResourceUsage::now().heapBytes - before.heapBytes;
        qInfo() << count << "rounds, heap grown by" << growth << "bytes," << before.descriptors
                << "descriptors," << before.threads << "threads";
        QVERIFY(growth < mostHeapGrowth);
    }
};

QUILMORA_TEST(SoakTest, runScreenTest)

#include "SoakTest.moc"
