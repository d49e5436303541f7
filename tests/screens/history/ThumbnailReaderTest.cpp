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
constexpr QSize size{400, 300};

} // namespace

class ThumbnailReaderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aPictureComesInSlices();
    void aFileThatChangesMeanwhileIsReadAnew();
    void aFileThatIsReplacedMeanwhileIsReadAnew();
    void aFileThatGoesMeanwhileIsAbsent();
    void anotherPictureTakesThePlaceOfWhatWasBegun();
    void anotherSquareBeginsThePictureAnew();

private:
    QString write(const QString &name, const QColor &colour) const;
    /// Goes on with a picture for as many slices as lead into its middle.
    void begin(const QString &path);
    /// Goes on to the end; gives the number of slices.
    int finish(const QString &path, const ThumbnailCache::Square &place = square);
    QColor middle(const QString &path) const;

    std::unique_ptr<TemporaryHome> home;
    std::unique_ptr<ThumbnailCache> cache;
    std::unique_ptr<ThumbnailReader> reader;
};

void ThumbnailReaderTest::init()
{
    home = std::make_unique<TemporaryHome>();
    cache = std::make_unique<ThumbnailCache>();
    reader = std::make_unique<ThumbnailReader>(*cache);
}

QString ThumbnailReaderTest::write(const QString &name, const QColor &colour) const
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(colour);
    return samplePictures::write(home->path(name), samplePictures::png(image));
}

void ThumbnailReaderTest::begin(const QString &path)
{
    for (int slice = 0; slice < size.height() / 2; ++slice) {
        QVERIFY(!reader->advance(path, square, QDeadlineTimer{0}));
    }
    QCOMPARE(reader->begunPath(), path);
}

int ThumbnailReaderTest::finish(const QString &path, const ThumbnailCache::Square &place)
{
    int slices = 1;
    while (!reader->advance(path, place, QDeadlineTimer{0})) {
        ++slices;
    }
    return slices;
}

QColor ThumbnailReaderTest::middle(const QString &path) const
{
    const QImage image = cache->find(path, square).pixmap.toImage();
    return image.pixelColor(image.rect().center());
}

void ThumbnailReaderTest::aPictureComesInSlices()
{
    const QString path = write(u"a.png"_s, Qt::red);
    begin(path);
    QCOMPARE(cache->find(path, square).state, State::unknown);
    finish(path);
    QCOMPARE(cache->find(path, square).state, State::ready);
    QCOMPARE(cache->find(path, square).pixmap.size(), QSize(100, 75));
    QCOMPARE(middle(path), QColor{Qt::red});
    QCOMPARE(reader->begunPath(), QString{});
}

void ThumbnailReaderTest::aFileThatChangesMeanwhileIsReadAnew()
{
    const QString path = write(u"a.png"_s, Qt::red);
    begin(path);
    // Into the same file.
    write(u"a.png"_s, Qt::blue);
    QVERIFY(finish(path) > size.height());
    QCOMPARE(cache->find(path, square).state, State::ready);
    QCOMPARE(middle(path), QColor{Qt::blue});
}

void ThumbnailReaderTest::aFileThatIsReplacedMeanwhileIsReadAnew()
{
    const QString path = write(u"a.png"_s, Qt::red);
    const QString other = write(u"b.png"_s, Qt::blue);
    begin(path);
    QVERIFY(QFile::remove(path) && QFile::rename(other, path));
    finish(path);
    QCOMPARE(middle(path), QColor{Qt::blue});
}

void ThumbnailReaderTest::aFileThatGoesMeanwhileIsAbsent()
{
    const QString path = write(u"a.png"_s, Qt::red);
    begin(path);
    QVERIFY(QFile::remove(path));
    QCOMPARE(finish(path), 1);
    QCOMPARE(cache->find(path, square).state, State::absent);
    QCOMPARE(reader->begunPath(), QString{});
}

void ThumbnailReaderTest::anotherPictureTakesThePlaceOfWhatWasBegun()
{
    const QString path = write(u"a.png"_s, Qt::red);
    const QString other = write(u"b.png"_s, Qt::blue);
    begin(path);
    finish(other);
    QCOMPARE(cache->find(path, square).state, State::unknown);
    QCOMPARE(middle(other), QColor{Qt::blue});
    QVERIFY(finish(path) > size.height());
    QCOMPARE(middle(path), QColor{Qt::red});
}

void ThumbnailReaderTest::anotherSquareBeginsThePictureAnew()
{
    const QString path = write(u"a.png"_s, Qt::red);
    begin(path);
    constexpr ThumbnailCache::Square larger{200, 8, 1.0};
    finish(path, larger);
    QCOMPARE(cache->find(path, larger).state, State::ready);
    QCOMPARE(cache->find(path, larger).pixmap.size(), QSize(200, 150));
}

int main(int argc, char **argv)
{
    return runScreenTest<ThumbnailReaderTest>(argc, argv);
}
#include "ThumbnailReaderTest.moc"
