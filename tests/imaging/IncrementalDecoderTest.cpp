#include "imaging/IncrementalDecoder.h"

#include "imaging/ImageCodec.h"
#include "model/PictureLimits.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QColorSpace>
#include <QPainter>
#include <QTemporaryDir>

#include <cmath>
#include <cstdlib>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr QSize box{100, 100};

/// Gradients, grain, edges and, where the format has it, transparency.
QImage scene(QSize size, QImage::Format format = QImage::Format_RGB32)
{
    QImage image{size, QImage::Format_ARGB32_Premultiplied};
    QPainter painter{&image};
    QLinearGradient gradient{0, 0, static_cast<double>(size.width()), static_cast<double>(size.height())};
    gradient.setColorAt(0, Qt::white);
    gradient.setColorAt(1, Qt::darkCyan);
    painter.fillRect(image.rect(), gradient);
    painter.fillRect(0, 0, size.width() / 4, size.height() / 4, Qt::red);
    painter.setPen(Qt::black);
    for (int x = 0; x < size.width(); x += 7) {
        painter.drawLine(x, size.height() / 2, x + size.width() / 9, size.height());
    }
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    const bool hasAlpha = QImage{1, 1, format}.hasAlphaChannel();
    painter.fillRect(size.width() / 2, size.height() / 5, size.width() / 3, size.height() / 5,
                     QColor{20, 40, 220, hasAlpha ? 90 : 255});
    painter.end();
    return image.convertToFormat(format);
}

QImage readWhole(IncrementalDecoder &reduction)
{
    while (!reduction.advance(QDeadlineTimer{QDeadlineTimer::Forever})) {
    }
    return reduction.image();
}

QImage reduced(const QString &path, QSize bounds = box)
{
    IncrementalDecoder reduction{path, bounds, pictureLimits::file};
    return readWhole(reduction);
}

/// The mean difference of two pictures' channels, of 255; more than that when they are not of one size.
double difference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size()) {
        return 256;
    }
    if (one.isNull()) {
        return 0;
    }
    const QImage left = one.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage right = other.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    double total = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (qsizetype i = 0; i < left.bytesPerLine(); ++i) {
            total += std::abs(left.constScanLine(y)[i] - right.constScanLine(y)[i]);
        }
    }
    return total / (4.0 * left.width() * left.height());
}

/// `image` as a PNG with one more chunk before its pixels.
QByteArray pngWith(const QImage &image, const QByteArray &type, const QByteArray &data)
{
    QByteArray bytes = samplePictures::png(image);
    return bytes.insert(bytes.indexOf("IDAT") - 4, samplePictures::pngChunk(type, data));
}

/// Of one gray, in the seven passes of an interlaced picture of 8 x 8 pixels.
QByteArray interlacedPng()
{
    QByteArray rows;
    for (const QSize pass : {QSize{1, 1}, {1, 1}, {2, 1}, {2, 2}, {4, 2}, {4, 4}, {8, 4}}) {
        rows += QByteArray{'\0' + QByteArray(pass.width(), '\x70')}.repeated(pass.height());
    }
    return QByteArray::fromHex("89504e470d0a1a0a") +
           samplePictures::pngChunk("IHDR", QByteArray::fromHex("00000008 00000008 08 00 00 00 01")) +
           samplePictures::pngChunk("IDAT", qCompress(rows).sliced(4)) + samplePictures::pngChunk("IEND", {});
}

} // namespace

class IncrementalDecoderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfPictureLooksAsIfScaledWhole_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        constexpr QSize size{613, 347};
        const auto add = [&](const char *name, QImage::Format format) {
            QTest::newRow(name) << samplePictures::png(scene(size, format));
        };
        add("RGB", QImage::Format_RGB32);
        add("RGBA", QImage::Format_ARGB32);
        add("gray", QImage::Format_Grayscale8);
        add("gray, 16 bits", QImage::Format_Grayscale16);
        add("RGB, 16 bits", QImage::Format_RGBX64);
        add("RGBA, 16 bits", QImage::Format_RGBA64);
        add("palette", QImage::Format_Indexed8);
        add("black and white", QImage::Format_Mono);
        QImage palette = scene(size, QImage::Format_Indexed8);
        palette.setColor(palette.pixelIndex(500, 300), qRgba(0, 0, 0, 0));
        palette.setColor(palette.pixelIndex(3, 3), qRgba(200, 0, 0, 100));
        QTest::newRow("palette with alpha") << samplePictures::png(palette);
        QTest::newRow("a transparent color")
            << pngWith(scene(size), "tRNS", QByteArray::fromHex("00ff 0000 0000"));
        const QImage gray = scene(size, QImage::Format_Grayscale8);
        const QByteArray shade = QByteArray::fromHex("00") + static_cast<char>(qGray(gray.pixel(3, 3)));
        QTest::newRow("a transparent gray") << pngWith(gray, "tRNS", shade);
        QTest::newRow("a transparent gray, 16 bits")
            << pngWith(scene(size, QImage::Format_Grayscale16), "tRNS", shade.right(1).repeated(2));
        const QByteArray linear = QByteArray::fromHex("000186a0");
        QTest::newRow("a gamma") << pngWith(scene(size), "gAMA", QByteArray::fromHex("0000c350"));
        QTest::newRow("light, 16 bits") << pngWith(scene(size, QImage::Format_RGBX64), "gAMA", linear);
        QTest::newRow("gray light, 16 bits")
            << pngWith(scene(size, QImage::Format_Grayscale16), "gAMA", linear);
        QTest::newRow("an sRGB mark") << pngWith(scene(size), "sRGB", QByteArray(1, '\0'));
        for (const auto format : {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_Indexed8}) {
            QImage wide = scene(size, format);
            wide.setColorSpace(QColorSpace::DisplayP3);
            QTest::addRow("a profile, format %d", format) << samplePictures::png(wide);
        }
        // Adobe RGB's primaries and gamma, without a profile.
        QByteArray chromaticities;
        for (const char *value : {"00007a26", "00008084", "0000fa00", "000080e8", "00005208", "0001155c",
                                  "00003a98", "00001770"}) {
            chromaticities += QByteArray::fromHex(value);
        }
        QByteArray named = pngWith(scene(size), "cHRM", chromaticities);
        named.insert(named.indexOf("IDAT") - 4,
                     samplePictures::pngChunk("gAMA", QByteArray::fromHex("0000b18e")));
        QTest::newRow("primaries and a gamma") << named;
    }

    void everyKindOfPictureLooksAsIfScaledWhole()
    {
        QFETCH(const QByteArray, bytes);
        const QString path = write(bytes);
        const QImage whole = imageCodec::decodeFile(path, pictureLimits::file);
        QVERIFY(!whole.isNull());
        const QImage image = reduced(path);
        QCOMPARE(image.size(), QSize(100, 56));
        // In colors: what has a palette would be scaled without taking means.
        const QImage expected = whole.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                                    .scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const double apart = difference(image, expected);
        QVERIFY2(apart < 1.0, qPrintable(QString::number(apart)));
    }

    void everyShapeIsFittedIntoTheBox_data()
    {
        const DataRows<QSize, QSize> row{"size", "fitted"};
        row("landscape", {2848, 1600}, {100, 56});
        row("portrait", {1600, 2848}, {56, 100});
        row("a little larger", {101, 101}, {100, 100});
        row("a line", {1, 900}, {1, 100});
        row("a long line", {9000, 1}, {100, 1});
        row("two thin rows", {3001, 2}, {100, 1});
        row("as large", {100, 100}, {100, 100});
        row("smaller", {37, 20}, {37, 20});
        row("one pixel", {1, 1}, {1, 1});
    }

    void everyShapeIsFittedIntoTheBox()
    {
        QFETCH(const QSize, size);
        QFETCH(const QSize, fitted);
        const QImage whole = scene(size);
        const QImage image = reduced(write(samplePictures::png(whole)));
        if (size == fitted) {
            QCOMPARE(image, whole);
        }
        const QImage expected = whole.scaled(fitted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const double apart = difference(image, expected);
        QVERIFY2(apart < 1.0, qPrintable(QString::number(apart)));
    }

    void everyPixelCountsAsMuchAsItsArea()
    {
        // Three by three become two by two: of each pixel the middle of an edge gives halves, the centre
        // quarters.
        QImage nine{3, 3, QImage::Format_Grayscale8};
        nine.fill(0);
        nine.setPixel(0, 0, qRgb(90, 90, 90));
        nine.setPixel(1, 0, qRgb(180, 180, 180));
        nine.setPixel(1, 1, qRgb(36, 36, 36));
        const QImage four = reduced(write(samplePictures::png(nine)), {2, 2});
        QCOMPARE(qRed(four.pixel(0, 0)), (90 + 180 / 2 + 36 / 4) * 4 / 9);
        QCOMPARE(qRed(four.pixel(1, 0)), (180 / 2 + 36 / 4) * 4 / 9);
        QCOMPARE(qRed(four.pixel(0, 1)), 36 / 4 * 4 / 9);
    }

    void slicesMakeNoDifference()
    {
        const QString path = write(samplePictures::png(scene({400, 300}, QImage::Format_ARGB32)));
        IncrementalDecoder sliced{path, box};
        int slices = 1;
        while (!sliced.advance(QDeadlineTimer{0})) {
            QVERIFY(sliced.image().isNull());
            ++slices;
        }
        QVERIFY2(slices > 300, qPrintable(QString::number(slices)));
        QVERIFY(!sliced.image().isNull());
        QCOMPARE(sliced.image(), reduced(path));
    }

    void whateverIsUnusualComesAsFromTheCodec_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QImage image = scene({300, 200});
        QTest::newRow("a JPEG") << samplePictures::sidewaysJpeg(image);
        QTest::newRow("a GIF") << samplePictures::animatedGif();
        QTest::newRow("a truncated JPEG") << samplePictures::jpeg(image).chopped(9);
        QTest::newRow("interlaced") << interlacedPng();
        QTest::newRow("an orientation") << pngWith(
            image, "eXIf", QByteArray::fromHex("4d4d002a00000008 00010112000300000001000600000000 0000"));
        QTest::newRow("no bytes") << QByteArray{};
        QTest::newRow("a signature only") << QByteArray::fromHex("89504e470d0a1a0a");
        QTest::newRow("text") << QByteArray{"<html>no picture</html>"};
        const QByteArray rows(100, '\0');
        QTest::newRow("too many pixels") << samplePictures::pngByHand({20'000, 15'000}, 8, 6, rows);
        QTest::newRow("too many bits") << samplePictures::pngByHand({20'000, 15'000}, 1, 0, rows);
        QTest::newRow("a very long row") << samplePictures::pngByHand({900'000, 1}, 8, 6, rows);
        QTest::newRow("rows that are not there") << samplePictures::pngByHand({300, 200}, 8, 6, rows);
        QTest::newRow("no rows") << samplePictures::pngByHand({0, 5}, 8, 2, rows);
    }

    void whateverIsUnusualComesAsFromTheCodec()
    {
        QFETCH(const QByteArray, bytes);
        const QString path = write(bytes);
        QCOMPARE(reduced(path), imageCodec::decodeFile(path, pictureLimits::file));
    }

    void everyTruncatedFileIsJudgedAsByTheCodec()
    {
        const QByteArray whole = samplePictures::png(scene({40, 30}));
        for (qsizetype length = 0; length < whole.size(); ++length) {
            const QString path = write(whole.first(length));
            QVERIFY2(reduced(path).isNull() == imageCodec::decodeFile(path, pictureLimits::file).isNull(),
                     qPrintable(QString::number(length)));
        }
    }

    void damagedFilesAreJudgedAsByTheCodec()
    {
        // The decoders' complaints would fill the report.
        const auto formerHandler = qInstallMessageHandler([](auto, const auto &, const auto &) {});
        const QByteArray whole = pngWith(scene({24, 18}), "gAMA", QByteArray::fromHex("000186a0"));
        int pictures = 0;
        bool agree = true;
        for (qsizetype position = 0; position < whole.size(); ++position) {
            QByteArray damaged = whole;
            damaged[position] = static_cast<char>(damaged.at(position) ^ (1 << position % 8));
            const QString path = write(damaged);
            const QImage expected = imageCodec::decodeFile(path, pictureLimits::file);
            pictures += expected.isNull() ? 0 : 1;
            agree = agree && difference(reduced(path, {1000, 1000}), expected) <= 1.0;
        }
        qInstallMessageHandler(formerHandler);
        QVERIFY(agree);
        QVERIFY(pictures > 0);
    }

    void aFileThatIsTruncatedWhileItIsReadGivesNothing()
    {
        const QString path = write(samplePictures::png(scene({1200, 900})));
        IncrementalDecoder reduction{path, box};
        for (int slice = 0; slice < 100; ++slice) {
            QVERIFY(!reduction.advance(QDeadlineTimer{0}));
        }
        QVERIFY(QFile::resize(path, 1000));
        QVERIFY(readWhole(reduction).isNull());
    }

    void aMissingFileGivesNothing()
    {
        for (const QString &path : {m_folder.filePath(u"missing.png"_s), QString{}, m_folder.path(),
                                    u"/dev/zero"_s, QString{5000, u'x'}}) {
            QVERIFY(reduced(path).isNull());
        }
    }

private:
    QString write(const QByteArray &bytes) const
    {
        return samplePictures::write(m_folder.filePath(u"a.png"_s), bytes);
    }

    const QTemporaryDir m_folder;
};

QUILMORA_TEST(IncrementalDecoderTest, runCoreTest)
#include "IncrementalDecoderTest.moc"
