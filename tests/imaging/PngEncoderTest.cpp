#include "imaging/PngEncoder.h"

#include "support/FailureNote.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QColorSpace>
#include <QMetaEnum>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>

#include <memory>
#include <random>
#include <spng.h>
#include <vector>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr std::array<QSize, 9> hardSizes{QSize{1, 1}, {1, 9},   {9, 1},   {2, 2},   {61, 37},
                                         {64, 64},    {65, 65}, {257, 3}, {1031, 2}};

/// A picture of that format with arbitrary pixels.
QImage arbitrary(QImage::Format format, QSize size)
{
    std::mt19937 random{static_cast<unsigned int>(size.width())};
    if (QImage::toPixelFormat(format).colorModel() == QPixelFormat::Indexed) {
        QImage image{size, format};
        QList<QRgb> colors;
        for (int i = 0; i < (image.depth() == 1 ? 2 : 256); ++i) {
            colors.append(static_cast<QRgb>(random()));
        }
        image.setColorTable(colors);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                image.setPixel(
                    x, y, static_cast<unsigned int>(random() % static_cast<unsigned int>(colors.size())));
            }
        }
        return image;
    }
    QImage image{size, QImage::Format_RGBA64};
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const auto any = QRgba64::fromRgba64((quint64{random()} << 32U) | random());
            const bool hasAlpha = QImage::toPixelFormat(format).alphaUsage() == QPixelFormat::UsesAlpha;
            image.setPixelColor(
                x, y,
                QColor::fromRgba64(hasAlpha ? any : qRgba64(any.red(), any.green(), any.blue(), 0xffff)));
        }
    }
    return image.convertToFormat(format);
}

struct Chunk {
    QByteArray type;
    QByteArray data;
};

QList<Chunk> chunksOf(const QByteArray &file)
{
    QList<Chunk> chunks;
    constexpr qsizetype signature = 8;
    constexpr qsizetype frame = 12;
    for (qsizetype at = signature; at < file.size();) {
        const qsizetype length = qFromBigEndian<quint32>(file.constData() + at);
        chunks.append({file.mid(at + 4, 4), file.mid(at + 8, length)});
        at += frame + length;
    }
    return chunks;
}

QByteArrayList typesOf(const QByteArray &file)
{
    QByteArrayList types;
    for (const Chunk &chunk : chunksOf(file)) {
        types.append(chunk.type);
    }
    return types;
}

/// The bits a sample and the colour type that the header names.
std::pair<int, int> formOf(const QByteArray &file)
{
    constexpr qsizetype bits = 24;
    return {file.at(bits), file.at(bits + 1)};
}

/// The pixels of `image`, row by row, as 16 bits a channel, not premultiplied.
QList<QRgba64> pixelsOf(const QImage &image)
{
    const QPixelFormat format = image.pixelFormat();
    const bool isDeep = image.format() == QImage::Format_Grayscale16 || format.redSize() > 8;
    // Of eight bits a channel no more are made than there are, whatever the alpha says.
    const QImage plain = isDeep ? image : image.convertToFormat(QImage::Format_ARGB32);
    const QImage deep = plain.convertToFormat(QImage::Format_RGBA64);
    QList<QRgba64> pixels;
    pixels.reserve(qsizetype{deep.width()} * deep.height());
    for (int y = 0; y < deep.height(); ++y) {
        const auto *row = static_cast<const QRgba64 *>(static_cast<const void *>(deep.constScanLine(y)));
        pixels.append(QList<QRgba64>{row, row + deep.width()});
    }
    return pixels;
}

QList<QRgba64> decodedByQt(const QByteArray &file) { return pixelsOf(QImage::fromData(file, "png")); }

/// The same by a decoder that has nothing in common with Qt's (libpng) but the format; empty if it refuses
/// the file or finds fault with any of its checksums.
QList<QRgba64> decodedBySpng(const QByteArray &file)
{
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context{spng_ctx_new(0), &spng_ctx_free};
    spng_set_crc_action(context.get(), SPNG_CRC_ERROR, SPNG_CRC_ERROR);
    std::size_t size = 0;
    if (spng_set_png_buffer(context.get(), file.constData(), static_cast<std::size_t>(file.size())) != 0 ||
        spng_decoded_image_size(context.get(), SPNG_FMT_RGBA16, &size) != 0) {
        return {};
    }
    std::vector<quint16> samples(size / sizeof(quint16));
    if (spng_decode_image(context.get(), samples.data(), size, SPNG_FMT_RGBA16, SPNG_DECODE_TRNS) != 0 ||
        spng_decode_chunks(context.get()) != 0) {
        return {};
    }
    QList<QRgba64> pixels;
    pixels.reserve(static_cast<qsizetype>(samples.size() / 4));
    for (std::size_t i = 0; i < samples.size(); i += 4) {
        pixels.append(qRgba64(samples[i], samples[i + 1], samples[i + 2], samples[i + 3]));
    }
    return pixels;
}

void compareEverywhere(const QList<QRgba64> &expected, const QByteArray &file)
{
    const QByteArray pixels = QByteArray::number(expected.size()) + " pixels, decoded by ";
    QVERIFY2(decodedByQt(file) == expected, QByteArray{pixels + "Qt"}.constData());
    QVERIFY2(decodedBySpng(file) == expected, QByteArray{pixels + "libspng"}.constData());
}

void compareEverywhere(const QImage &image, const QByteArray &file)
{
    compareEverywhere(pixelsOf(image), file);
}

} // namespace

class PngEncoderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormatInEverySize_data()
    {
        QTest::addColumn<QImage::Format>("format");
        const auto names = QMetaEnum::fromType<QImage::Format>();
        for (int format = QImage::Format_Invalid + 1; format < QImage::NImageFormats; ++format) {
            QTest::addRow("%s", names.valueToKey(format)) << static_cast<QImage::Format>(format);
        }
    }

    void everyFormatInEverySize()
    {
        QFETCH(const QImage::Format, format);
        for (const QSize size : hardSizes) {
            const QImage image = arbitrary(format, size);
            QCOMPARE(image.format(), format);
            compareEverywhere(image, pngEncoder::encode(image));
        }
    }

    void theFormStays_data()
    {
        const DataRows<QImage::Format, int, int> row{"format", "bits", "colorType"};
        constexpr int grey = 0;
        constexpr int rgb = 2;
        constexpr int rgba = 6;
        row("black and white", QImage::Format_Mono, 8, rgba);
        row("black and white, backwards", QImage::Format_MonoLSB, 8, rgba);
        row("palette", QImage::Format_Indexed8, 8, rgba);
        row("grey", QImage::Format_Grayscale8, 8, grey);
        row("deep grey", QImage::Format_Grayscale16, 16, grey);
        row("colour", QImage::Format_RGB32, 8, rgb);
        row("few colors", QImage::Format_RGB16, 8, rgb);
        row("transparency", QImage::Format_ARGB32, 8, rgba);
        row("premultiplied", QImage::Format_ARGB32_Premultiplied, 8, rgba);
        row("ten bits", QImage::Format_BGR30, 16, rgb);
        row("deep colour", QImage::Format_RGBX64, 16, rgb);
        row("deep transparency", QImage::Format_RGBA64, 16, rgba);
        row("floating point", QImage::Format_RGBA16FPx4, 16, rgba);
    }

    void theFormStays()
    {
        QFETCH(const QImage::Format, format);
        QFETCH(const int, bits);
        QFETCH(const int, colorType);
        const auto form = formOf(pngEncoder::encode(arbitrary(format, {20, 10})));
        QCOMPARE(form.first, bits);
        QCOMPARE(form.second, colorType);
    }

    void anOpaqueAlphaIsLeftOut()
    {
        for (const auto format : {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
                                  QImage::Format_RGBA8888, QImage::Format_RGBA8888_Premultiplied,
                                  QImage::Format_RGBA64, QImage::Format_RGBA64_Premultiplied}) {
            const FailureNote note{QByteArray::number(format)};
            // More rows than are converted at once.
            QImage image = samplePictures::picture({33, 150}).convertToFormat(format);
            const QByteArray opaque = pngEncoder::encode(image);
            QCOMPARE(formOf(opaque).second, 2);
            compareEverywhere(image, opaque);

            image.setPixelColor(32, 149, QColor{10, 20, 30, 254});
            const QByteArray translucent = pngEncoder::encode(image);
            QCOMPARE(formOf(translucent).second, 6);
            compareEverywhere(image, translucent);
        }
    }

    void theFillerOfAFormatIsNotLookedAt()
    {
        QImage image = samplePictures::picture({30, 20});
        const QList<QRgba64> expected = pixelsOf(image);
        for (int y = 0; y < image.height(); ++y) {
            auto *row = static_cast<QRgb *>(static_cast<void *>(image.scanLine(y)));
            for (int x = 0; x < image.width(); ++x) {
                row[x] = (row[x] & 0xffffffU) | static_cast<QRgb>(x * y) << 24U;
            }
        }
        compareEverywhere(expected, pngEncoder::encode(image));
    }

    void rowsMayLieApart()
    {
        for (const auto format :
             {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
              QImage::Format_Grayscale16, QImage::Format_RGB16, QImage::Format_RGB888, QImage::Format_RGB32,
              QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA64}) {
            const FailureNote note{QByteArray::number(format)};
            const QImage image = arbitrary(format, {67, 130});
            const qsizetype apart = image.bytesPerLine() + 48;
            // Its own memory, every row at another distance than an image of that width has.
            QByteArray memory(apart * image.height(), '\xa5');
            for (int y = 0; y < image.height(); ++y) {
                std::copy_n(image.constScanLine(y), image.bytesPerLine(),
                            static_cast<uchar *>(static_cast<void *>(memory.data() + y * apart)));
            }
            QImage foreign{static_cast<const uchar *>(static_cast<const void *>(memory.constData())),
                           image.width(), image.height(), apart, format};
            if (image.colorCount() > 0) {
                foreign.setColorTable(image.colorTable());
            }
            compareEverywhere(image, pngEncoder::encode(foreign));
        }
    }

    void aPaletteShorterThanItsPixels()
    {
        QImage image{3, 1, QImage::Format_Indexed8};
        image.setColorTable({qRgb(1, 2, 3), qRgb(250, 0, 9)});
        uchar *row = image.scanLine(0);
        row[0] = 0;
        row[1] = 1;
        row[2] = 200;
        QImage expected{3, 1, QImage::Format_RGB32};
        expected.setPixel(0, 0, qRgb(1, 2, 3));
        expected.setPixel(1, 0, qRgb(250, 0, 9));
        expected.setPixel(2, 0, qRgb(0, 0, 0));
        compareEverywhere(expected, pngEncoder::encode(image));
        image.setColorTable({});
        expected.setPixel(0, 0, qRgb(0, 0, 0));
        expected.setPixel(1, 0, qRgb(1, 1, 1));
        expected.setPixel(2, 0, qRgb(200, 200, 200));
        compareEverywhere(expected, pngEncoder::encode(image));
    }

    void everyLevelGivesTheSamePixels()
    {
        const QImage image = samplePictures::picture({300, 200});
        for (int level = 1; level <= 12; ++level) {
            compareEverywhere(image, pngEncoder::encode(image, level));
        }
    }

    void flatnessAndNoise()
    {
        QImage flat{4000, 1000, QImage::Format_Grayscale8};
        flat.fill(200);
        compareEverywhere(flat, pngEncoder::encode(flat));
        QImage empty{700, 500, QImage::Format_ARGB32};
        empty.fill(Qt::transparent);
        compareEverywhere(empty, pngEncoder::encode(empty));
        const QImage noise = arbitrary(QImage::Format_RGB32, {700, 500});
        compareEverywhere(noise, pngEncoder::encode(noise));
    }

    void theChunksAreTheseAndNoOthers()
    {
        QImage image = samplePictures::picture({20, 10});
        image.setText(u"Comment"_s, u"my address"_s);
        image.setDotsPerMeterX(11811);
        image.setDotsPerMeterY(11811);
        const QByteArray file = pngEncoder::encode(image);
        QCOMPARE(typesOf(file), (QByteArrayList{"IHDR", "sRGB", "IDAT", "IEND"}));
        QCOMPARE(QImage::fromData(file).colorSpace(), QColorSpace{QColorSpace::SRgb});
    }

    void largePicturesComeInSeveralChunks()
    {
        const QImage image = arbitrary(QImage::Format_RGB32, {1000, 900});
        const QByteArray file = pngEncoder::encode(image);
        qsizetype data = 0;
        for (const Chunk &chunk : chunksOf(file)) {
            QVERIFY(chunk.data.size() <= pngEncoder::largestChunk);
            data += chunk.type == "IDAT" ? 1 : 0;
        }
        QCOMPARE(data, qsizetype{3});
        compareEverywhere(image, file);
    }

    void pngcheckFindsNothing()
    {
        const QString program = QStandardPaths::findExecutable(u"pngcheck"_s);
        QVERIFY2(!program.isEmpty(), "pngcheck is not installed");
        const QTemporaryDir folder;
        QStringList files;
        for (int format = QImage::Format_Invalid + 1; format < QImage::NImageFormats; ++format) {
            const QByteArray bytes =
                pngEncoder::encode(arbitrary(static_cast<QImage::Format>(format), {61, 37}));
            files += samplePictures::write(folder.filePath(u"%1.png"_s.arg(format)), bytes);
        }
        QProcess check;
        check.start(program, QStringList{u"-q"_s} + files);
        QVERIFY(check.waitForFinished());
        QCOMPARE(check.readAllStandardOutput(), QByteArray{});
        QCOMPARE(check.exitCode(), 0);
    }

    void noPictureGivesNoBytes()
    {
        QCOMPARE(pngEncoder::encode(QImage{}), QByteArray{});
        QCOMPARE(pngEncoder::encode(QImage{0, 5, QImage::Format_RGB32}), QByteArray{});
    }
};

QUILMORA_TEST(PngEncoderTest, runCoreTest)
#include "PngEncoderTest.moc"
