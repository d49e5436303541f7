#include "imaging/ImageCodec.h"

#include "model/PictureLimits.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QTemporaryDir>

#include <cstdlib>

using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Whether two colors differ by no more than JPEG and rounding make them differ.
bool isNear(QRgb one, QRgb other, int tolerance)
{
    return std::abs(qRed(one) - qRed(other)) <= tolerance &&
           std::abs(qGreen(one) - qGreen(other)) <= tolerance &&
           std::abs(qBlue(one) - qBlue(other)) <= tolerance;
}

QImage filled(QColor color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image{16, 16, format};
    image.fill(color);
    return image;
}

} // namespace

/// Sound pictures of every format, orientation and color space.
class ImageCodecTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void photosStandUpright_data()
    {
        // The mark: of the corners, the one that the mark of the top left goes to.
        const DataRows<char, QSize, QPoint> row{"orientation", "size", "mark"};
        row("as it is", '\1', {64, 32}, {0, 0});
        row("mirrored", '\2', {64, 32}, {1, 0});
        row("upside down", '\3', {64, 32}, {1, 1});
        row("mirrored upside down", '\4', {64, 32}, {0, 1});
        row("transposed", '\5', {32, 64}, {0, 0});
        row("quarter turn to the right", '\6', {32, 64}, {1, 0});
        row("transposed, half turn", '\7', {32, 64}, {1, 1});
        row("quarter turn to the left", '\10', {32, 64}, {0, 1});
    }

    void photosStandUpright()
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

    void anAnimationGivesItsFirstPicture()
    {
        QByteArray bytes = samplePictures::animatedGif();
        QBuffer buffer{&bytes};
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(QImageReader{&buffer}.imageCount(), 2);
        const QImage image = imageCodec::decode(bytes);
        QCOMPARE(image.size(), QSize(2, 2));
        QCOMPARE(image.pixel(1, 1), qRgb(255, 0, 0));
    }

    void aProgressiveJpegIsDecoded()
    {
        const QImage image = samplePictures::picture({64, 48});
        const QByteArray bytes = samplePictures::progressiveJpeg(image);
        QVERIFY(bytes.contains(QByteArray::fromHex("ffc2")));
        QVERIFY(isNear(imageCodec::decode(bytes).pixel(2, 2), image.pixel(2, 2), 40));
    }

    void aPhotoOf108MegapixelsIsDecoded()
    {
        constexpr QSize size{12000, 9000};
        const QByteArray rows(qsizetype{size.height()} * (size.width() + 1), '\0');
        const QTemporaryDir folder;
        const QImage image =
            imageCodec::decodeFile(samplePictures::write(folder.filePath(u"photo.png"_s),
                                                         samplePictures::pngByHand(size, 8, 0, rows)),
                                   pictureLimits::file);
        QCOMPARE(image.size(), size);
        // In full color it takes four bytes a pixel, which must lie within the bound as well.
        QVERIFY(qint64{size.width()} * size.height() * 4 < pictureLimits::file.pixels * 4);
    }

    void anyFileNameWillDo()
    {
        const QTemporaryDir folder;
        const QImage image = samplePictures::picture({32, 24});
        // What addresses escape, the mark of twice the density, and no suffix or a wrong one, too.
        for (const QString &name :
             {u"照片/自拍.png"_s, u" a  folder / my photo .png"_s, u"it's \"mine\".png"_s,
              u"😀👩‍👩‍👧.png"_s, u"100%25 #1?a=b&c.png"_s, u"photo@2x.png"_s, u"photo"_s,
              u"photo.svg"_s}) {
            const QString path = samplePictures::write(folder.filePath(name), samplePictures::png(image));
            const QImage decoded = imageCodec::decodeFile(path);
            QVERIFY2(decoded == image && decoded.devicePixelRatio() == 1.0, qPrintable(name));
            samplePictures::write(path, samplePictures::jpeg(image));
            QVERIFY2(imageCodec::decodeFile(path).size() == image.size(), qPrintable(name));
        }
    }

    void wideColorsBecomeSrgb_data()
    {
        const DataRows<QColor, QColor> row{"displayP3", "srgb"};
        row("orange", {200, 100, 50}, {215, 93, 31});
        row("green", {100, 150, 100}, {83, 152, 95});
        row("blue", {60, 120, 180}, {30, 122, 185});
        row("gray", {128, 128, 128}, {128, 128, 128});
        row("beyond sRGB", {255, 0, 0}, {255, 0, 0});
    }

    void wideColorsBecomeSrgb()
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

    void encodedPicturesAreInSrgb()
    {
        const QImage image = samplePictures::picture({1600, 2848});
        QCOMPARE(imageCodec::decode(imageCodec::encodePng(image)), samplePictures::inSrgb(image));
        QImage wide = filled(QColor{60, 160, 90});
        wide.setColorSpace(QColorSpace::AdobeRgb);
        const QImage written = QImage::fromData(imageCodec::encodePng(wide));
        QCOMPARE(written, wide.convertedToColorSpace(QColorSpace::SRgb));
        QVERIFY(written.pixel(0, 0) != wide.pixel(0, 0));
        QCOMPARE(imageCodec::encodePng(QImage{}), QByteArray{});
    }

    void colorsWithoutAProfileStayAsTheyAre()
    {
        const QColor color{200, 100, 50};
        QCOMPARE(imageCodec::decode(samplePictures::png(filled(color))).pixel(8, 8), color.rgb());
        QImage standard = filled(color);
        standard.setColorSpace(QColorSpace::SRgb);
        QCOMPARE(imageCodec::decode(samplePictures::png(standard)).pixel(8, 8), color.rgb());
    }

    void palettesWithAProfileBecomeSrgb()
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

    void graysWithAGammaBecomeSrgb()
    {
        // A chunk that calls the samples proportional to light: a quarter of it is sRGB's 137.
        const QByteArray linear = samplePictures::pngChunk("gAMA", QByteArray::fromHex("000186a0"));
        const QByteArray row = QByteArray::fromHex("00 40 40");
        const QImage gray = imageCodec::decode(samplePictures::pngByHand({2, 2}, 8, 0, row + row, linear));
        QVERIFY(isNear(gray.pixel(0, 0), qRgb(137, 137, 137), 1));

        const QByteArray deepRow = QByteArray::fromHex("00 4000 4010");
        const QImage deep =
            imageCodec::decode(samplePictures::pngByHand({2, 2}, 16, 0, deepRow + deepRow, linear));
        QCOMPARE(deep.format(), QImage::Format_Grayscale16);
        const auto *samples = static_cast<const quint16 *>(static_cast<const void *>(deep.constScanLine(0)));
        QVERIFY(std::abs(samples[0] - 35199) < 100);
        QVERIFY2(samples[1] > samples[0], "Neighboring grays became the same");
    }

    void sixteenBitsAndTransparencyAreKept()
    {
        const QColor color = QColor::fromRgba64(0x1234, 0x5678, 0x9abc, 0xdef0);
        const QImage image = imageCodec::decode(samplePictures::png(filled(color, QImage::Format_RGBA64)));
        QCOMPARE(image.depth(), 64);
        QCOMPARE(image.pixelColor(1, 1).rgba64(), color.rgba64());

        const QByteArray row = QByteArray::fromHex("00 1234 5678");
        const QImage gray = imageCodec::decode(samplePictures::pngByHand({2, 1}, 16, 0, row));
        QCOMPARE(gray.format(), QImage::Format_Grayscale16);
        QCOMPARE(gray.pixelColor(1, 0).rgba64().red(), quint16{0x5678});

        const QImage eightBits = filled(QColor{10, 20, 30, 40}, QImage::Format_ARGB32);
        const QImage transparent = imageCodec::decode(samplePictures::png(eightBits));
        QVERIFY(transparent.hasAlphaChannel());
        QCOMPARE(transparent.pixel(8, 8), qRgba(10, 20, 30, 40));
    }

    void fourInkColorsAreDecoded()
    {
        const QByteArray bytes = samplePictures::cmykJpeg();
        // The frame header: eight bits, eight rows, eight columns, four components.
        QVERIFY(bytes.contains(QByteArray::fromHex("ffc0001408 0008 0008 04")));
        const QImage image = imageCodec::decode(bytes);
        QCOMPARE(image.size(), QSize(8, 8));
        QVERIFY(isNear(image.pixel(0, 0), qRgb(64, 64, 64), 2));
        QVERIFY(isNear(image.pixel(7, 7), qRgb(64, 64, 64), 2));
    }
};

QUILMORA_TEST(ImageCodecTest, runCoreTest)
#include "ImageCodecTest.moc"
