#include "screens/history/ThumbnailCache.h"
#include "screens/history/ThumbnailReader.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"

#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

using State = ThumbnailCache::State;

namespace {

constexpr ThumbnailCache::Square square{100, 8, 1.0};

/// Of the pictures that are read in slices.
constexpr QSize size{400, 300};

} // namespace

/// The pictures of tiles: what is known of them, and how they are read.
class ThumbnailsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_cache = std::make_unique<ThumbnailCache>();
        m_reader = std::make_unique<ThumbnailReader>(*m_cache);
    }

    void cleanup() { m_home.reset(); }

    void aPictureIsUnknownUntilItIsLoaded()
    {
        writePicture(u"a.png"_s, {10, 10});
        QCOMPARE(m_cache->find(u"~/a.png"_s, square).state, State::unknown);
        load(u"~/a.png"_s, square);
        QCOMPARE(m_cache->find(u"~/a.png"_s, square).state, State::ready);
        QVERIFY(!m_cache->find(u"~/a.png"_s, square).pixmap.isNull());
    }

    void aPictureIsFittedIntoTheSquare_data()
    {
        QTest::addColumn<QSize>("side");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("landscape") << QSize{1600, 900} << 1.0 << QSize{100, 56};
        QTest::newRow("portrait") << QSize{900, 1600} << 1.0 << QSize{56, 100};
        QTest::newRow("twice the resolution") << QSize{1600, 900} << 2.0 << QSize{200, 112};
        QTest::newRow("small") << QSize{10, 5} << 1.5 << QSize{150, 75};
        QTest::newRow("a line") << QSize{1, 900} << 1.0 << QSize{1, 100};
    }

    void aPictureIsFittedIntoTheSquare()
    {
        QFETCH(const QSize, side);
        QFETCH(const double, ratio);
        QFETCH(const QSize, pixels);
        const QString path = writePicture(u"a.png"_s, side);
        load(path, {100, 8, ratio});
        const QPixmap pixmap = m_cache->find(path, {100, 8, ratio}).pixmap;
        QCOMPARE(pixmap.size(), pixels);
        QCOMPARE(pixmap.devicePixelRatio(), ratio);
    }

    void anotherSizeOrResolutionMakesItOutdated()
    {
        const QString path = writePicture(u"a.png"_s, {16, 9});
        load(path, square);
        QCOMPARE(m_cache->find(path, {120, 8, 1.0}).state, State::outdated);
        QCOMPARE(m_cache->find(path, {100, 8, 2.0}).state, State::outdated);
        QVERIFY(!m_cache->find(path, {120, 8, 1.0}).pixmap.isNull());
        load(path, {120, 8, 1.0});
        QCOMPARE(m_cache->find(path, {120, 8, 1.0}).state, State::ready);
    }

    void aChangedFileIsUnknownAgain()
    {
        const QString path = writePicture(u"a.png"_s, {16, 9});
        load(path, square);
        writePicture(u"a.png"_s, {9, 16});
        const auto found = m_cache->find(path, square);
        QCOMPARE(found.state, State::unknown);
        QVERIFY(found.pixmap.isNull());
    }

    void aFileThatIsGoneIsAbsentAndForgotten()
    {
        const QString path = writePicture(u"a.png"_s, {16, 9});
        load(path, square);
        QVERIFY(m_cache->bytes() > 0);
        QVERIFY(QFile::remove(path));
        QCOMPARE(m_cache->find(path, square).state, State::absent);
        QCOMPARE(m_cache->bytes(), 0);
        load(path, square);
        QCOMPARE(m_cache->find(path, square).state, State::absent);
    }

    void whatIsNoPictureIsAbsentUntilTheFileChanges()
    {
        const QString path = samplePictures::write(m_home->path(u"a.png"_s), "text");
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
        load(path, square);
        QCOMPARE(m_cache->find(path, square).state, State::absent);
        writePicture(u"a.png"_s, {16, 9});
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
    }

    void whatWasNotUsedForTheLongestTimeGoesFirst()
    {
        // Each takes 4 MB, so that sixteen fit.
        constexpr ThumbnailCache::Square large{1024, 8, 1.0};
        constexpr int count = 17;
        QStringList paths;
        for (int number = 0; number < count; ++number) {
            paths += writePicture(u"%1.png"_s.arg(number), {8, 8});
            load(paths.last(), large);
        }
        QCOMPARE(m_cache->bytes(), qsizetype{count} * 1024 * 1024 * 4);
        QCOMPARE(m_cache->find(paths.at(0), large).state, State::ready);
        m_cache->trim({});
        QVERIFY(m_cache->bytes() <= ThumbnailCache::maximumBytes);
        QCOMPARE(m_cache->find(paths.at(1), large).state, State::unknown);
        for (int kept = 0; kept < count; ++kept) {
            QVERIFY(kept == 1 || m_cache->find(paths.at(kept), large).state == State::ready);
        }
    }

    void whatIsInUseStaysBeyondTheBound()
    {
        constexpr ThumbnailCache::Square large{1024, 8, 1.0};
        QSet<QString> inUse;
        for (int number = 0; number < 18; ++number) {
            const QString path = writePicture(u"%1.png"_s.arg(number), {8, 8});
            load(path, large);
            inUse.insert(path);
        }
        m_cache->trim(inUse);
        for (const QString &path : std::as_const(inUse)) {
            QCOMPARE(m_cache->find(path, large).state, State::ready);
        }
    }

    void aPictureComesInSlices()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        begin(path);
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
        finish(path);
        QCOMPARE(m_cache->find(path, square).state, State::ready);
        QCOMPARE(m_cache->find(path, square).pixmap.size(), QSize(100, 75));
        QCOMPARE(middle(path), QColor{Qt::red});
        QCOMPARE(m_reader->currentPath(), QString{});
    }

    void aFileThatChangesMeanwhileIsReadAnew_data()
    {
        QTest::addColumn<bool>("isReplaced");
        QTest::newRow("the same file") << false;
        QTest::newRow("another file in its place") << true;
    }

    void aFileThatChangesMeanwhileIsReadAnew()
    {
        QFETCH(const bool, isReplaced);
        const QString path = write(u"a.png"_s, Qt::red);
        begin(path);
        const QString other = write(isReplaced ? u"b.png"_s : u"a.png"_s, Qt::blue);
        QVERIFY(!isReplaced || (QFile::remove(path) && QFile::rename(other, path)));
        QVERIFY(finish(path) > size.height());
        QCOMPARE(m_cache->find(path, square).state, State::ready);
        QCOMPARE(middle(path), QColor{Qt::blue});
    }

    void aFileThatGoesMeanwhileIsAbsent()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        begin(path);
        QVERIFY(QFile::remove(path));
        QCOMPARE(finish(path), 1);
        QCOMPARE(m_cache->find(path, square).state, State::absent);
        QCOMPARE(m_reader->currentPath(), QString{});
    }

    void anotherPictureTakesThePlaceOfWhatWasBegun()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        const QString other = write(u"b.png"_s, Qt::blue);
        begin(path);
        finish(other);
        QCOMPARE(m_cache->find(path, square).state, State::unknown);
        QCOMPARE(middle(other), QColor{Qt::blue});
        QVERIFY(finish(path) > size.height());
        QCOMPARE(middle(path), QColor{Qt::red});
    }

    void anotherSquareBeginsThePictureAnew()
    {
        const QString path = write(u"a.png"_s, Qt::red);
        begin(path);
        constexpr ThumbnailCache::Square larger{200, 8, 1.0};
        finish(path, larger);
        QCOMPARE(m_cache->find(path, larger).state, State::ready);
        QCOMPARE(m_cache->find(path, larger).pixmap.size(), QSize(200, 150));
    }

private:
    QString writePicture(const QString &name, QSize side, const QColor &color = Qt::red) const
    {
        return samplePictures::writePng(m_home->path(name), samplePictures::plain(side, color));
    }

    QString write(const QString &name, const QColor &color) const { return writePicture(name, size, color); }

    void load(const QString &path, const ThumbnailCache::Square &place)
    {
        while (!m_reader->advance(path, place, QDeadlineTimer{QDeadlineTimer::Forever})) {
        }
    }

    /// Goes on with a picture for as many slices as lead into its middle.
    void begin(const QString &path)
    {
        for (int slice = 0; slice < size.height() / 2; ++slice) {
            QVERIFY(!m_reader->advance(path, square, QDeadlineTimer{0}));
        }
        QCOMPARE(m_reader->currentPath(), path);
    }

    /// Goes on to the end; gives the number of slices.
    int finish(const QString &path, const ThumbnailCache::Square &place = square)
    {
        int slices = 1;
        while (!m_reader->advance(path, place, QDeadlineTimer{0})) {
            ++slices;
        }
        return slices;
    }

    QColor middle(const QString &path) const
    {
        const QImage image = m_cache->find(path, square).pixmap.toImage();
        return image.pixelColor(image.rect().center());
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<ThumbnailCache> m_cache;
    std::unique_ptr<ThumbnailReader> m_reader;
};

QUILMORA_TEST(ThumbnailsTest, runScreenTest)
#include "ThumbnailsTest.moc"
