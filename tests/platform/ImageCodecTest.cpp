#include "platform/ImageCodec.h"

#include "support/SamplePictures.h"

#include <QBuffer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// Whether two colours differ by no more than JPEG and rounding make them differ.
bool isNear(QRgb one, QRgb other, int tolerance)
{
    return std::abs(qRed(one) - qRed(other)) <= tolerance &&
           std::abs(qGreen(one) - qGreen(other)) <= tolerance &&
           std::abs(qBlue(one) - qBlue(other)) <= tolerance;
}

} // namespace

class ImageCodecTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSamplesAreWhatTheySay();
    void photosStandUpright_data();
    void photosStandUpright();
    void anAnimationGivesItsFirstPicture();
    void aProgressiveJpegIsDecoded();
    void aPhotoOf108MegapixelsIsDecoded();
    void theContentDecidesAndNotTheSuffix();
    void anyFileNameWillDo_data();
    void anyFileNameWillDo();
};

void ImageCodecTest::theSamplesAreWhatTheySay()
{
    QByteArray bytes = samplePictures::sidewaysJpeg(samplePictures::picture({32, 16}));
    QBuffer buffer{&bytes};
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(QImageReader{&buffer}.transformation(), QImageIOHandler::TransformationRotate90);
    // The frame header: eight bits, eight rows, eight columns, four components.
    QVERIFY(samplePictures::cmykJpeg().contains(QByteArray::fromHex("ffc0001408 0008 0008 04")));
    bytes = samplePictures::animatedGif();
    buffer.close();
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QImageReader animation{&buffer};
    QCOMPARE(animation.imageCount(), 2);
    QCOMPARE(animation.read().pixel(1, 1), qRgb(255, 0, 0));
    QCOMPARE(animation.read().pixel(1, 1), qRgb(0, 0, 255));
    QCOMPARE(samplePictures::pngOfSize(10485760).size(), qsizetype{10485760});
    QCOMPARE(imageCodec::decode(samplePictures::pngOfSize(10485760)).size(), QSize(8, 8));
}

void ImageCodecTest::photosStandUpright_data()
{
    QTest::addColumn<char>("orientation");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("mark"); // Of the corners, the one that the mark of the top left goes to.
    QTest::newRow("as it is") << '\1' << QSize{64, 32} << QPoint{0, 0};
    QTest::newRow("mirrored") << '\2' << QSize{64, 32} << QPoint{1, 0};
    QTest::newRow("upside down") << '\3' << QSize{64, 32} << QPoint{1, 1};
    QTest::newRow("mirrored upside down") << '\4' << QSize{64, 32} << QPoint{0, 1};
    QTest::newRow("transposed") << '\5' << QSize{32, 64} << QPoint{0, 0};
    QTest::newRow("quarter turn to the right") << '\6' << QSize{32, 64} << QPoint{1, 0};
    QTest::newRow("transposed, half turn") << '\7' << QSize{32, 64} << QPoint{1, 1};
    QTest::newRow("quarter turn to the left") << '\10' << QSize{32, 64} << QPoint{0, 1};
}

void ImageCodecTest::photosStandUpright()
{
    QFETCH(const char, orientation);
    QFETCH(const QSize, size);
    QFETCH(const QPoint, mark);
    QByteArray photo = samplePictures::sidewaysJpeg(samplePictures::picture({64, 32}, Qt::red));
    const QByteArray entry = QByteArray::fromHex("011200030000000100");
    QCOMPARE(photo.count(entry), 1);
    photo[photo.indexOf(entry) + entry.size()] = orientation;

    const QImage image = imageCodec::decode(photo);
    QCOMPARE(image.size(), size);
    for (const QPoint corner : {QPoint{0, 0}, QPoint{1, 0}, QPoint{0, 1}, QPoint{1, 1}}) {
        const QRgb pixel =
            image.pixel(2 + corner.x() * (size.width() - 5), 2 + corner.y() * (size.height() - 5));
        QCOMPARE(isNear(pixel, qRgb(255, 0, 0), 40), corner == mark);
    }
}

void ImageCodecTest::anAnimationGivesItsFirstPicture()
{
    const QImage image = imageCodec::decode(samplePictures::animatedGif());
    QCOMPARE(image.size(), QSize(2, 2));
    QCOMPARE(image.pixel(1, 1), qRgb(255, 0, 0));
}

void ImageCodecTest::aProgressiveJpegIsDecoded()
{
    const QImage image = samplePictures::picture({64, 48});
    QByteArray bytes = samplePictures::progressiveJpeg(image);
    QVERIFY(bytes.contains(QByteArray::fromHex("ffc2")));
    QVERIFY(isNear(imageCodec::decode(bytes).pixel(2, 2), image.pixel(2, 2), 40));
}

void ImageCodecTest::aPhotoOf108MegapixelsIsDecoded()
{
    constexpr QSize size{12000, 9000};
    const QByteArray rows(qsizetype{size.height()} * (size.width() + 1), '\0');
    const QTemporaryDir folder;
    const QImage image = imageCodec::decodeFile(
        samplePictures::write(folder.filePath(u"photo.png"_s), samplePictures::pngByHand(size, 8, 0, rows)));
    QCOMPARE(image.size(), size);
    // In full colour it takes four bytes a pixel, which must lie within the bound as well.
    QVERIFY(qint64{size.width()} * size.height() * 4 < qint64{imageCodec::maximumBitmapMebibytes} << 20);
    QCOMPARE(QImageReader::allocationLimit(), imageCodec::maximumBitmapMebibytes);
}

void ImageCodecTest::theContentDecidesAndNotTheSuffix()
{
    const QTemporaryDir folder;
    const QImage image = samplePictures::picture({32, 24});
    const QString lying = samplePictures::write(folder.filePath(u"photo.png"_s), samplePictures::jpeg(image));
    QCOMPARE(imageCodec::decodeFile(lying).size(), QSize(32, 24));
    const QString nameless = samplePictures::write(folder.filePath(u"photo"_s), samplePictures::png(image));
    QCOMPARE(imageCodec::decodeFile(nameless), image);
    const QString drawing =
        samplePictures::write(folder.filePath(u"photo.svg"_s), samplePictures::png(image));
    QCOMPARE(imageCodec::decodeFile(drawing), image);
}

void ImageCodecTest::anyFileNameWillDo_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Chinese") << u"照片/自拍.png"_s;
    QTest::newRow("blanks") << u" a  folder / my photo .png"_s;
    QTest::newRow("quotes") << u"it's \"mine\".png"_s;
    QTest::newRow("emoji") << u"😀👩‍👩‍👧.png"_s;
    QTest::newRow("what addresses escape") << u"100%25 #1?a=b&c.png"_s;
    QTest::newRow("twice the density") << u"photo@2x.png"_s;
}

void ImageCodecTest::anyFileNameWillDo()
{
    QFETCH(const QString, name);
    const QTemporaryDir folder;
    const QImage image = samplePictures::picture({32, 24});
    samplePictures::write(folder.filePath(name), samplePictures::png(image));
    const QImage decoded = imageCodec::decodeFile(folder.filePath(name));
    QCOMPARE(decoded, image);
    QCOMPARE(decoded.devicePixelRatio(), 1.0);
}

QTEST_GUILESS_MAIN(ImageCodecTest)
#include "ImageCodecTest.moc"
