#include "support/SamplePictures.h"

#include <QBuffer>
#include <QColorSpace>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QtEndian>

#include <libdeflate.h>

namespace quilmora::test::samplePictures {
namespace {

QByteArray encoded(const QImage &image, const char *format, int quality)
{
    QByteArray bytes;
    QBuffer buffer{&bytes};
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, quality)) {
        qFatal("Cannot encode a sample picture as %s", format);
    }
    return bytes;
}

QByteArray bigEndian(quint32 value)
{
    QByteArray four(4, '\0');
    qToBigEndian(value, four.data());
    return four;
}

} // namespace

QImage picture(QSize size, const QColor &mark)
{
    QImage image{size, QImage::Format_RGB32};
    QPainter painter{&image};
    QLinearGradient gradient{0, 0, 0, static_cast<qreal>(size.height())};
    gradient.setColorAt(0, Qt::white);
    gradient.setColorAt(1, Qt::darkCyan);
    painter.fillRect(image.rect(), gradient);
    painter.fillRect(0, 0, size.width() / 4, size.height() / 4, mark);
    return image;
}

QImage plain(QSize size, const QColor &color)
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(color);
    return image;
}

QImage inSrgb(QImage image)
{
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

QByteArray png(const QImage &image) { return encoded(image, "png", -1); }

QByteArray jpeg(const QImage &image, int quality) { return encoded(image, "jpeg", quality); }

QByteArray progressiveJpeg(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer{&bytes};
    QImageWriter writer{&buffer, "jpeg"};
    writer.setProgressiveScanWrite(true);
    if (!writer.write(image)) {
        qFatal("Cannot encode a progressive JPEG");
    }
    return bytes;
}

QByteArray sidewaysJpeg(const QImage &image)
{
    // An Exif segment with the one entry that matters: tag 0x0112 (orientation), value 6.
    static const QByteArray segment = QByteArray::fromHex("ffe1 0022 457869660000 4d4d002a00000008 0001"
                                                          "0112 0003 00000001 0006 0000 00000000");
    return jpeg(image).insert(2, segment);
}

QByteArray cmykJpeg()
{
    // 8 x 8 pixels of one colour, written by hand: baseline, four components, trivial Huffman tables.
    const QByteArray table = "01000000000000000000000000000000 00";
    return QByteArray::fromHex("ffd8 ffee 000e 41646f62650064 00000000 00 ffdb 0043 00") +
           QByteArray(64, '\x01') +
           QByteArray::fromHex("ffc0 0014 08 0008 0008 04 011100 021100 031100 041100") +
           // One code of one bit in each table: the value 0 (no difference; end of block).
           QByteArray::fromHex("ffc4 0014 00" + table) + QByteArray::fromHex("ffc4 0014 10" + table) +
           QByteArray::fromHex("ffda 000e 04 0100 0200 0300 0400 003f00 00 ffd9");
}

QByteArray animatedGif()
{
    return QByteArray::fromHex("474946383961 0200 0200 80 0000 ff0000 0000ff 21f904 000a0000 00"
                               "2c00000000 0200 0200 00 02 02 8451 00 21f904 000a0000 00"
                               "2c00000000 0200 0200 00 02 02 8c53 00 3b");
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &data)
{
    const QByteArray summed = type + data;
    return bigEndian(static_cast<quint32>(data.size())) + summed +
           bigEndian(libdeflate_crc32(0, summed.constData(), static_cast<std::size_t>(summed.size())));
}

QByteArray pngByHand(QSize size, char bits, char colorType, const QByteArray &rows, const QByteArray &extra)
{
    constexpr qsizetype lengthBeforeZlibStream = 4;
    const QByteArray header = bigEndian(static_cast<quint32>(size.width())) +
                              bigEndian(static_cast<quint32>(size.height())) + bits + colorType +
                              QByteArray(3, '\0');
    return QByteArray::fromHex("89504e470d0a1a0a") + pngChunk("IHDR", header) + extra +
           pngChunk("IDAT", qCompress(rows, 1).sliced(lengthBeforeZlibStream)) + pngChunk("IEND", {});
}

QByteArray pngOfSize(qsizetype size)
{
    QByteArray bytes = png(picture({8, 8}));
    constexpr qsizetype chunkOverhead = 12;
    constexpr qsizetype endChunk = 12;
    const QByteArray keyword{"C\0", 2};
    const qsizetype room = size - bytes.size() - chunkOverhead - keyword.size();
    if (room < 0) {
        qFatal("No PNG is that small");
    }
    return bytes.insert(bytes.size() - endChunk, pngChunk("tEXt", keyword + QByteArray(room, 'x')));
}

QString write(const QString &path, const QByteArray &bytes)
{
    QDir{}.mkpath(QFileInfo{path}.path());
    QFile file{path};
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("Cannot write a sample file");
    }
    return path;
}

QString writePng(const QString &path, const QImage &image) { return write(path, png(image)); }

} // namespace quilmora::test::samplePictures
