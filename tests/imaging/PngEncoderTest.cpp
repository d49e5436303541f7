#include "imaging/PngEncoder.h"

#include "support/PngDecoders.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QColorSpace>
#include <QMetaEnum>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <random>

using namespace Qt::StringLiterals;
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

void compareEverywhere(const QImage &image, const QByteArray &file)
{
    const QList<QRgba64> expected = pngDecoders::pixelsOf(image);
    for (const pngDecoders::Decoder &decoder : pngDecoders::all()) {
        const QList<QRgba64> decoded = decoder.decode(file);
        QVERIFY2(decoded == expected, qPrintable(u"%1: %2 of %3 pixels, %4x%5"_s.arg(decoder.name)
                                                     .arg(decoded.size())
                                                     .arg(expected.size())
                                                     .arg(image.width())
                                                     .arg(image.height())));
    }
}

} // namespace

class PngEncoderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormatInEverySize_data();
    void everyFormatInEverySize();
    void theFormStays_data();
    void theFormStays();
    void anOpaqueAlphaIsLeftOut_data();
    void anOpaqueAlphaIsLeftOut();
    void theFillerOfAFormatIsNotLookedAt();
    void rowsMayLieApart_data();
    void rowsMayLieApart();
    void aPaletteShorterThanItsPixels();
    void everyLevelGivesTheSamePixels();
    void flatnessAndNoise();
    void theChunksAreTheseAndNoOthers();
    void largePicturesComeInSeveralChunks();
    void pngcheckFindsNothing();
    void noPictureGivesNoBytes();
};

void PngEncoderTest::everyFormatInEverySize_data()
{
    QTest::addColumn<QImage::Format>("format");
    const auto names = QMetaEnum::fromType<QImage::Format>();
    for (int format = QImage::Format_Invalid + 1; format < QImage::NImageFormats; ++format) {
        QTest::addRow("%s", names.valueToKey(format)) << static_cast<QImage::Format>(format);
    }
}

void PngEncoderTest::everyFormatInEverySize()
{
    QFETCH(const QImage::Format, format);
    for (const QSize size : hardSizes) {
        const QImage image = arbitrary(format, size);
        QCOMPARE(image.format(), format);
        compareEverywhere(image, pngEncoder::encode(image));
    }
}

void PngEncoderTest::theFormStays_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("colorType");
    constexpr int grey = 0;
    constexpr int rgb = 2;
    constexpr int rgba = 6;
    QTest::newRow("black and white") << QImage::Format_Mono << 8 << rgba;
    QTest::newRow("black and white, backwards") << QImage::Format_MonoLSB << 8 << rgba;
    QTest::newRow("palette") << QImage::Format_Indexed8 << 8 << rgba;
    QTest::newRow("grey") << QImage::Format_Grayscale8 << 8 << grey;
    QTest::newRow("deep grey") << QImage::Format_Grayscale16 << 16 << grey;
    QTest::newRow("colour") << QImage::Format_RGB32 << 8 << rgb;
    QTest::newRow("few colors") << QImage::Format_RGB16 << 8 << rgb;
    QTest::newRow("transparency") << QImage::Format_ARGB32 << 8 << rgba;
    QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied << 8 << rgba;
    QTest::newRow("ten bits") << QImage::Format_BGR30 << 16 << rgb;
    QTest::newRow("deep colour") << QImage::Format_RGBX64 << 16 << rgb;
    QTest::newRow("deep transparency") << QImage::Format_RGBA64 << 16 << rgba;
    QTest::newRow("floating point") << QImage::Format_RGBA16FPx4 << 16 << rgba;
}

void PngEncoderTest::theFormStays()
{
    QFETCH(const QImage::Format, format);
    QFETCH(const int, bits);
    QFETCH(const int, colorType);
    const auto form = formOf(pngEncoder::encode(arbitrary(format, {20, 10})));
    QCOMPARE(form.first, bits);
    QCOMPARE(form.second, colorType);
}

void PngEncoderTest::anOpaqueAlphaIsLeftOut_data()
{
    QTest::addColumn<QImage::Format>("format");
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
                              QImage::Format_RGBA8888, QImage::Format_RGBA8888_Premultiplied,
                              QImage::Format_RGBA64, QImage::Format_RGBA64_Premultiplied}) {
        QTest::addRow("%d", format) << format;
    }
}

void PngEncoderTest::anOpaqueAlphaIsLeftOut()
{
    QFETCH(const QImage::Format, format);
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

void PngEncoderTest::theFillerOfAFormatIsNotLookedAt()
{
    QImage image = samplePictures::picture({30, 20});
    const QList<QRgba64> expected = pngDecoders::pixelsOf(image);
    for (int y = 0; y < image.height(); ++y) {
        auto *row = static_cast<QRgb *>(static_cast<void *>(image.scanLine(y)));
        for (int x = 0; x < image.width(); ++x) {
            row[x] = (row[x] & 0xffffffU) | static_cast<QRgb>(x * y) << 24U;
        }
    }
    for (const pngDecoders::Decoder &decoder : pngDecoders::all()) {
        QCOMPARE(decoder.decode(pngEncoder::encode(image)), expected);
    }
}

void PngEncoderTest::rowsMayLieApart_data()
{
    QTest::addColumn<QImage::Format>("format");
    for (const auto format :
         {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8, QImage::Format_Grayscale16,
          QImage::Format_RGB16, QImage::Format_RGB888, QImage::Format_RGB32,
          QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA64}) {
        QTest::addRow("%d", format) << format;
    }
}

void PngEncoderTest::rowsMayLieApart()
{
    QFETCH(const QImage::Format, format);
    const QImage image = arbitrary(format, {67, 130});
    const qsizetype apart = image.bytesPerLine() + 48;
    // Its own memory, every row at another distance than an image of that width has.
    QByteArray memory(apart * image.height(), '\xa5');
    for (int y = 0; y < image.height(); ++y) {
        std::copy_n(image.constScanLine(y), image.bytesPerLine(),
                    static_cast<uchar *>(static_cast<void *>(memory.data() + y * apart)));
    }
    QImage foreign{static_cast<const uchar *>(static_cast<const void *>(memory.constData())), image.width(),
                   image.height(), apart, format};
    if (image.colorCount() > 0) {
        foreign.setColorTable(image.colorTable());
    }
    compareEverywhere(image, pngEncoder::encode(foreign));
}

void PngEncoderTest::aPaletteShorterThanItsPixels()
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

void PngEncoderTest::everyLevelGivesTheSamePixels()
{
    const QImage image = samplePictures::picture({300, 200});
    for (int level = 1; level <= 12; ++level) {
        compareEverywhere(image, pngEncoder::encode(image, level));
    }
}

void PngEncoderTest::flatnessAndNoise()
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

void PngEncoderTest::theChunksAreTheseAndNoOthers()
{
    QImage image = samplePictures::picture({20, 10});
    image.setText(u"Comment"_s, u"my address"_s);
    image.setDotsPerMeterX(11811);
    image.setDotsPerMeterY(11811);
    const QByteArray file = pngEncoder::encode(image);
    QCOMPARE(typesOf(file), (QByteArrayList{"IHDR", "sRGB", "IDAT", "IEND"}));
    QCOMPARE(QImage::fromData(file).colorSpace(), QColorSpace{QColorSpace::SRgb});
}

void PngEncoderTest::largePicturesComeInSeveralChunks()
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

void PngEncoderTest::pngcheckFindsNothing()
{
    const QString program = QStandardPaths::findExecutable(u"pngcheck"_s);
    QVERIFY2(!program.isEmpty(), "pngcheck is not installed");
    const QTemporaryDir folder;
    QStringList files;
    for (int format = QImage::Format_Invalid + 1; format < QImage::NImageFormats; ++format) {
        const QByteArray bytes = pngEncoder::encode(arbitrary(static_cast<QImage::Format>(format), {61, 37}));
        files += samplePictures::write(folder.filePath(u"%1.png"_s.arg(format)), bytes);
    }
    QProcess check;
    check.start(program, QStringList{u"-q"_s} + files);
    QVERIFY(check.waitForFinished());
    QCOMPARE(check.readAllStandardOutput(), QByteArray{});
    QCOMPARE(check.exitCode(), 0);
}

void PngEncoderTest::noPictureGivesNoBytes()
{
    QCOMPARE(pngEncoder::encode(QImage{}), QByteArray{});
    QCOMPARE(pngEncoder::encode(QImage{0, 5, QImage::Format_RGB32}), QByteArray{});
}

QUILMORA_TEST(PngEncoderTest, runCoreTest)
#include "PngEncoderTest.moc"
