#include "imaging/ImageCodec.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QColorSpace>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// A picture of that form with arbitrary pixels, of which the rows have no even length.
QImage arbitrary(QImage::Format format)
{
    std::mt19937 random{3};
    QImage image{61, 37, format};
    if (format == QImage::Format_Indexed8) {
        QList<QRgb> colors;
        for (int i = 0; i < 256; ++i) {
            colors.append(static_cast<QRgb>(random()) | 0xff000000U);
        }
        image.setColorTable(colors);
    }
    for (int y = 0; y < image.height(); ++y) {
        uchar *row = image.scanLine(y);
        for (qsizetype i = 0; i < image.bytesPerLine(); ++i) {
            row[i] = static_cast<uchar>(random());
        }
    }
    // The filler of formats without transparency has to be opaque.
    return image.hasAlphaChannel() ? image
                                   : image.convertToFormat(QImage::Format_RGBA64).convertToFormat(format);
}

} // namespace

class ImageCodecPngTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPixelComesBack_data();
    void everyPixelComesBack();
    void transparentColorsOfAPaletteComeBack();
    void coversOfEverySizeComeBack();
    void commentsOfThePictureStayAtHome();
    void otherColorSpacesBecomeSrgb();
    void noImageGivesNoBytes();
    void theBytesAreAPngOfTheWholePicture();
};

void ImageCodecPngTest::everyPixelComesBack_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<int>("depth");
    QTest::newRow("RGB") << QImage::Format_RGB32 << 32;
    QTest::newRow("RGB in three bytes") << QImage::Format_RGB888 << 32;
    QTest::newRow("ARGB") << QImage::Format_ARGB32 << 32;
    QTest::newRow("RGBA, byte by byte") << QImage::Format_RGBA8888 << 32;
    QTest::newRow("grey") << QImage::Format_Grayscale8 << 8;
    QTest::newRow("grey, 16 bits") << QImage::Format_Grayscale16 << 16;
    QTest::newRow("RGB, 16 bits") << QImage::Format_RGBX64 << 64;
    QTest::newRow("ARGB, 16 bits") << QImage::Format_RGBA64 << 64;
    QTest::newRow("palette") << QImage::Format_Indexed8 << 32;
    QTest::newRow("black and white") << QImage::Format_Mono << 32;
}

void ImageCodecPngTest::everyPixelComesBack()
{
    QFETCH(const QImage::Format, format);
    QFETCH(const int, depth);
    const QImage image = arbitrary(format);
    const QImage back = imageCodec::decode(imageCodec::encodePng(image));
    QCOMPARE(back.size(), image.size());
    QCOMPARE(back.depth(), depth);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            // The colour under full transparency has to come back too.
            QCOMPARE(back.pixelColor(x, y).rgba64(), image.pixelColor(x, y).rgba64());
        }
    }
}

void ImageCodecPngTest::transparentColorsOfAPaletteComeBack()
{
    QImage palette{2, 1, QImage::Format_Indexed8};
    palette.setColorTable({qRgba(1, 2, 3, 4), qRgba(250, 240, 230, 255)});
    palette.setPixel(0, 0, 0);
    palette.setPixel(1, 0, 1);
    const QImage back = imageCodec::decode(imageCodec::encodePng(palette));
    QCOMPARE(back.pixel(0, 0), qRgba(1, 2, 3, 4));
    QCOMPARE(back.pixel(1, 0), qRgba(250, 240, 230, 255));
}

void ImageCodecPngTest::coversOfEverySizeComeBack()
{
    for (const QSize size : {QSize{1, 1}, QSize{1, 500}, QSize{500, 1}, QSize{1600, 2848}}) {
        const QImage image = samplePictures::picture(size);
        QCOMPARE(imageCodec::decode(imageCodec::encodePng(image)), samplePictures::inSrgb(image));
    }
}

void ImageCodecPngTest::commentsOfThePictureStayAtHome()
{
    QImage image = samplePictures::picture({20, 10});
    image.setText(u"Comment"_s, u"my address"_s);
    const QByteArray bytes = imageCodec::encodePng(image);
    QVERIFY(!bytes.contains("tEXt") && !bytes.contains("iTXt") && !bytes.contains("zTXt"));
    QCOMPARE(imageCodec::decode(bytes), samplePictures::inSrgb(samplePictures::picture({20, 10})));
}

void ImageCodecPngTest::otherColorSpacesBecomeSrgb()
{
    QImage wide{20, 10, QImage::Format_RGB32};
    wide.fill(QColor{60, 160, 90});
    wide.setColorSpace(QColorSpace::AdobeRgb);
    const QImage written = QImage::fromData(imageCodec::encodePng(wide));
    QCOMPARE(written, wide.convertedToColorSpace(QColorSpace::SRgb));
    QVERIFY(written.pixel(0, 0) != wide.pixel(0, 0));
}

void ImageCodecPngTest::noImageGivesNoBytes()
{
    QCOMPARE(imageCodec::encodePng(QImage{}), QByteArray{});
    QCOMPARE(imageCodec::encodePng(QImage{0, 5, QImage::Format_RGB32}), QByteArray{});
}

void ImageCodecPngTest::theBytesAreAPngOfTheWholePicture()
{
    const QByteArray bytes = imageCodec::encodePng(samplePictures::picture({300, 200}));
    QVERIFY(
        bytes.startsWith(QByteArray::fromHex("89504e470d0a1a0a 0000000d 49484452 0000012c 000000c8 08 02")));
    QVERIFY(bytes.endsWith(QByteArray::fromHex("00000000 49454e44 ae426082")));
}

QUILMORA_TEST(ImageCodecPngTest, runCoreTest)
#include "ImageCodecPngTest.moc"
