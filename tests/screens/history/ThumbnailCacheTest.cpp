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

namespace
{

constexpr ThumbnailCache::Square square{100, 8, 1.0};

void load(ThumbnailCache &cache, const QString &path, const ThumbnailCache::Square &place)
{
    ThumbnailReader reader{cache};
    while (!reader.advance(path, place, QDeadlineTimer{QDeadlineTimer::Forever})) {
    }
}

} // namespace

class ThumbnailCacheTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { home = std::make_unique<TemporaryHome>(); }
    void cleanup() { home.reset(); }
    void aPictureIsUnknownUntilItIsLoaded();
    void aPictureIsFittedIntoTheSquare_data();
    void aPictureIsFittedIntoTheSquare();
    void anotherSizeOrResolutionMakesItOutdated();
    void aChangedFileIsUnknownAgain();
    void aFileThatIsGoneIsAbsentAndForgotten();
    void whatIsNoPictureIsAbsentUntilTheFileChanges();
    void whatWasNotUsedForTheLongestTimeGoesFirst();
    void whatIsInUseStaysBeyondTheBound();

private:
    QString writePicture(const QString &name, QSize size) const
    {
        QImage image{size, QImage::Format_RGB32};
        image.fill(Qt::red);
        return samplePictures::write(home->path(name), samplePictures::png(image));
    }

    std::unique_ptr<TemporaryHome> home;
};

void ThumbnailCacheTest::aPictureIsUnknownUntilItIsLoaded()
{
    writePicture(u"a.png"_s, {10, 10});
    ThumbnailCache cache;
    QCOMPARE(cache.find(u"~/a.png"_s, square).state, State::unknown);
    load(cache, u"~/a.png"_s, square);
    QCOMPARE(cache.find(u"~/a.png"_s, square).state, State::ready);
    QVERIFY(!cache.find(u"~/a.png"_s, square).pixmap.isNull());
}

void ThumbnailCacheTest::aPictureIsFittedIntoTheSquare_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("landscape") << QSize{1600, 900} << 1.0 << QSize{100, 56};
    QTest::newRow("portrait") << QSize{900, 1600} << 1.0 << QSize{56, 100};
    QTest::newRow("twice the resolution") << QSize{1600, 900} << 2.0 << QSize{200, 112};
    QTest::newRow("small") << QSize{10, 5} << 1.5 << QSize{150, 75};
    QTest::newRow("a line") << QSize{1, 900} << 1.0 << QSize{1, 100};
}

void ThumbnailCacheTest::aPictureIsFittedIntoTheSquare()
{
    QFETCH(const QSize, size);
    QFETCH(const double, ratio);
    QFETCH(const QSize, pixels);
    const QString path = writePicture(u"a.png"_s, size);
    ThumbnailCache cache;
    load(cache, path, {100, 8, ratio});
    const QPixmap pixmap = cache.find(path, {100, 8, ratio}).pixmap;
    QCOMPARE(pixmap.size(), pixels);
    QCOMPARE(pixmap.devicePixelRatio(), ratio);
}

void ThumbnailCacheTest::anotherSizeOrResolutionMakesItOutdated()
{
    const QString path = writePicture(u"a.png"_s, {16, 9});
    ThumbnailCache cache;
    load(cache, path, square);
    QCOMPARE(cache.find(path, {120, 8, 1.0}).state, State::outdated);
    QCOMPARE(cache.find(path, {100, 8, 2.0}).state, State::outdated);
    QVERIFY(!cache.find(path, {120, 8, 1.0}).pixmap.isNull());
    load(cache, path, {120, 8, 1.0});
    QCOMPARE(cache.find(path, {120, 8, 1.0}).state, State::ready);
}

void ThumbnailCacheTest::aChangedFileIsUnknownAgain()
{
    const QString path = writePicture(u"a.png"_s, {16, 9});
    ThumbnailCache cache;
    load(cache, path, square);
    writePicture(u"a.png"_s, {9, 16});
    const auto found = cache.find(path, square);
    QCOMPARE(found.state, State::unknown);
    QVERIFY(found.pixmap.isNull());
}

void ThumbnailCacheTest::aFileThatIsGoneIsAbsentAndForgotten()
{
    const QString path = writePicture(u"a.png"_s, {16, 9});
    ThumbnailCache cache;
    load(cache, path, square);
    QVERIFY(cache.bytes() > 0);
    QVERIFY(QFile::remove(path));
    QCOMPARE(cache.find(path, square).state, State::absent);
    QCOMPARE(cache.bytes(), 0);
    load(cache, path, square);
    QCOMPARE(cache.find(path, square).state, State::absent);
}

void ThumbnailCacheTest::whatIsNoPictureIsAbsentUntilTheFileChanges()
{
    const QString path = samplePictures::write(home->path(u"a.png"_s), "text");
    ThumbnailCache cache;
    QCOMPARE(cache.find(path, square).state, State::unknown);
    load(cache, path, square);
    QCOMPARE(cache.find(path, square).state, State::absent);
    writePicture(u"a.png"_s, {16, 9});
    QCOMPARE(cache.find(path, square).state, State::unknown);
}

void ThumbnailCacheTest::whatWasNotUsedForTheLongestTimeGoesFirst()
{
    // Each takes 4 MB, so that sixteen fit.
    constexpr ThumbnailCache::Square large{1024, 8, 1.0};
    constexpr int count = 17;
    ThumbnailCache cache;
    QStringList paths;
    for (int number = 0; number < count; ++number) {
        paths += writePicture(u"%1.png"_s.arg(number), {8, 8});
        load(cache, paths.last(), large);
    }
    QCOMPARE(cache.bytes(), qsizetype{count} * 1024 * 1024 * 4);
    QCOMPARE(cache.find(paths.at(0), large).state, State::ready);
    cache.trim({});
    QVERIFY(cache.bytes() <= ThumbnailCache::maximumBytes);
    QCOMPARE(cache.find(paths.at(1), large).state, State::unknown);
    for (int kept = 0; kept < count; ++kept) {
        QVERIFY(kept == 1 || cache.find(paths.at(kept), large).state == State::ready);
    }
}

void ThumbnailCacheTest::whatIsInUseStaysBeyondTheBound()
{
    constexpr ThumbnailCache::Square large{1024, 8, 1.0};
    ThumbnailCache cache;
    QSet<QString> inUse;
    for (int number = 0; number < 18; ++number) {
        const QString path = writePicture(u"%1.png"_s.arg(number), {8, 8});
        load(cache, path, large);
        inUse.insert(path);
    }
    cache.trim(inUse);
    for (const QString &path : std::as_const(inUse)) {
        QCOMPARE(cache.find(path, large).state, State::ready);
    }
}

int main(int argc, char **argv)
{
    return runScreenTest<ThumbnailCacheTest>(argc, argv);
}
#include "ThumbnailCacheTest.moc"
