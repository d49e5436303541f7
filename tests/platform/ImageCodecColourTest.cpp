#include "platform/ImageCodec.h"
#include "support/SamplePictures.h"

#include <QColorSpace>
#include <QTest>

#include <cstdlib>

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

QImage filled(QColor colour, QImage::Format format = QImage::Format_RGB32)
{
    QImage image{16, 16, format};
    image.fill(colour);
    return image;
}

} // namespace

class ImageCodecColourTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wideColoursBecomeSrgb_data();
    void wideColoursBecomeSrgb();
    void coloursWithoutAProfileStayAsTheyAre();
    void palettesWithAProfileBecomeSrgb();
    void greysWithAGammaBecomeSrgb();
    void sixteenBitsAreKept();
    void transparencyIsKept();
    void printersColoursAreDecoded();
};

void ImageCodecColourTest::wideColoursBecomeSrgb_data()
{
    QTest::addColumn<QColor>("displayP3");
    QTest::addColumn<QColor>("srgb");
    QTest::newRow("orange") << QColor{200, 100, 50} << QColor{215, 93, 31};
    QTest::newRow("green") << QColor{100, 150, 100} << QColor{83, 152, 95};
    QTest::newRow("blue") << QColor{60, 120, 180} << QColor{30, 122, 185};
    QTest::newRow("grey") << QColor{128, 128, 128} << QColor{128, 128, 128};
    QTest::newRow("beyond sRGB") << QColor{255, 0, 0} << QColor{255, 0, 0};
}

void ImageCodecColourTest::wideColoursBecomeSrgb()
{
    QFETCH(const QColor, displayP3);
    QFETCH(const QColor, srgb);
    QImage wide = filled(displayP3);
    wide.setColorSpace(QColorSpace::DisplayP3);

    const QImage fromPng = imageCodec::decode(samplePictures::png(wide));
    QVERIFY(isNear(fromPng.pixel(8, 8), srgb.rgb(), 1));
    QCOMPARE(fromPng.colorSpace(), QColorSpace{QColorSpace::SRgb});
    const QImage fromJpeg = imageCodec::decode(samplePictures::jpeg(wide, 100));
    QVERIFY(isNear(fromJpeg.pixel(8, 8), srgb.rgb(), 4));
    QCOMPARE(fromJpeg.colorSpace(), QColorSpace{QColorSpace::SRgb});
}

void ImageCodecColourTest::coloursWithoutAProfileStayAsTheyAre()
{
    const QColor colour{200, 100, 50};
    QCOMPARE(imageCodec::decode(samplePictures::png(filled(colour))).pixel(8, 8), colour.rgb());
    QImage standard = filled(colour);
    standard.setColorSpace(QColorSpace::SRgb);
    QCOMPARE(imageCodec::decode(samplePictures::png(standard)).pixel(8, 8), colour.rgb());
}

void ImageCodecColourTest::palettesWithAProfileBecomeSrgb()
{
    QImage palette{16, 16, QImage::Format_Indexed8};
    palette.setColorTable({qRgb(200, 100, 50), qRgb(60, 120, 180), qRgba(100, 150, 100, 0)});
    palette.fill(1);
    palette.setPixel(0, 0, 2);
    palette.setColorSpace(QColorSpace::DisplayP3);
    const QImage image = imageCodec::decode(samplePictures::png(palette));
    QVERIFY(isNear(image.pixel(8, 8), qRgb(30, 122, 185), 1));
    QCOMPARE(qAlpha(image.pixel(8, 8)), 255);
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
}

void ImageCodecColourTest::greysWithAGammaBecomeSrgb()
{
    // A chunk that calls the samples proportional to light: a quarter of it is sRGB's 137.
    const QByteArray linear = samplePictures::pngChunk("gAMA", QByteArray::fromHex("000186a0"));
    const QByteArray row = QByteArray::fromHex("00 40 40");
    const QImage grey = imageCodec::decode(samplePictures::pngByHand({2, 2}, 8, 0, row + row, linear));
    QVERIFY(isNear(grey.pixel(0, 0), qRgb(137, 137, 137), 1));

    const QByteArray deepRow = QByteArray::fromHex("00 4000 4010");
    const QImage deep =
        imageCodec::decode(samplePictures::pngByHand({2, 2}, 16, 0, deepRow + deepRow, linear));
    QCOMPARE(deep.format(), QImage::Format_Grayscale16);
    const auto *samples = static_cast<const quint16 *>(static_cast<const void *>(deep.constScanLine(0)));
    QVERIFY(std::abs(samples[0] - 35199) < 100);
    QVERIFY2(samples[1] > samples[0], "Neighbouring greys fell together");
}

void ImageCodecColourTest::sixteenBitsAreKept()
{
    QImage deep{4, 4, QImage::Format_RGBA64};
    deep.fill(QColor::fromRgba64(0x1234, 0x5678, 0x9abc, 0xdef0));
    const QImage image = imageCodec::decode(samplePictures::png(deep));
    QCOMPARE(image.depth(), 64);
    QCOMPARE(image.pixelColor(1, 1).rgba64(), qRgba64(0x1234, 0x5678, 0x9abc, 0xdef0));

    const QByteArray row = QByteArray::fromHex("00 1234 5678");
    const QImage grey = imageCodec::decode(samplePictures::pngByHand({2, 1}, 16, 0, row));
    QCOMPARE(grey.format(), QImage::Format_Grayscale16);
    QCOMPARE(grey.pixelColor(1, 0).rgba64().red(), quint16{0x5678});
}

void ImageCodecColourTest::transparencyIsKept()
{
    const QImage image =
        imageCodec::decode(samplePictures::png(filled(QColor{10, 20, 30, 40}, QImage::Format_ARGB32)));
    QVERIFY(image.hasAlphaChannel());
    QCOMPARE(image.pixel(8, 8), qRgba(10, 20, 30, 40));
}

void ImageCodecColourTest::printersColoursAreDecoded()
{
    const QImage image = imageCodec::decode(samplePictures::cmykJpeg());
    QCOMPARE(image.size(), QSize(8, 8));
    QVERIFY(isNear(image.pixel(0, 0), qRgb(64, 64, 64), 2));
    QVERIFY(isNear(image.pixel(7, 7), qRgb(64, 64, 64), 2));
}

QTEST_GUILESS_MAIN(ImageCodecColourTest)
#include "ImageCodecColourTest.moc"
