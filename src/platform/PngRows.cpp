#include "platform/PngRows.h"

#include <QRgba64>
#include <QtEndian>

#include <algorithm>

namespace quilmora
{
namespace
{

/// How many rows are converted at once when their format is none that is read directly.
constexpr int stripRows = 64;

/// The format, of those that rows are read from directly, that holds all that `format` holds.
QImage::Format layoutFor(QImage::Format format)
{
    switch (format) {
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
        return QImage::Format_Mono;
    case QImage::Format_Indexed8:
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_RGB888:
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBA8888:
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
        return format;
    default:
        break;
    }
    const QPixelFormat pixel = QImage::toPixelFormat(format);
    const bool hasAlpha = pixel.alphaUsage() == QPixelFormat::UsesAlpha;
    if (pixel.redSize() > 8) {
        // Also without an alpha: on the way to RGBX64 ten bits would become eight.
        return QImage::Format_RGBA64;
    }
    return hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
}

template <typename Pixel>
const Pixel *pixels(const uchar *line)
{
    return static_cast<const Pixel *>(static_cast<const void *>(line));
}

/// Four pixels at a time: three words written are quicker than twelve bytes.
void writeWordsAsRgb(const uchar *line, int width, uchar *out)
{
    const auto *words = pixels<QRgb>(line);
    constexpr QRgb colour = 0xffffffU;
    qsizetype x = 0;
    for (; x + 4 <= width; x += 4, out += 12) {
        const QRgb first = words[x] & colour;
        const QRgb second = words[x + 1] & colour;
        const QRgb third = words[x + 2] & colour;
        const QRgb fourth = words[x + 3] & colour;
        qToBigEndian(first << 8U | second >> 16U, out);
        qToBigEndian(second << 16U | third >> 8U, out + 4);
        qToBigEndian(third << 24U | fourth, out + 8);
    }
    for (; x < width; ++x, out += 3) {
        out[0] = static_cast<uchar>(qRed(words[x]));
        out[1] = static_cast<uchar>(qGreen(words[x]));
        out[2] = static_cast<uchar>(qBlue(words[x]));
    }
}

void writeWordsAsRgba(const uchar *line, int width, uchar *out)
{
    const auto *words = pixels<QRgb>(line);
    constexpr QRgb colour = 0xffffffU;
    for (qsizetype x = 0; x < width; ++x) {
        qToBigEndian((words[x] & colour) << 8U | words[x] >> 24U, out + 4 * x);
    }
}

/// Bytes in the file's order of which every fourth is left out.
void writeThreeOfFour(const uchar *line, int width, uchar *out)
{
    for (qsizetype x = 0; x < width; ++x) {
        out[3 * x] = line[4 * x];
        out[3 * x + 1] = line[4 * x + 1];
        out[3 * x + 2] = line[4 * x + 2];
    }
}

template <bool withAlpha>
void writeDeep(const uchar *line, int width, uchar *out)
{
    const auto *deep = pixels<QRgba64>(line);
    for (qsizetype x = 0; x < width; ++x) {
        qToBigEndian(deep[x].red(), out);
        qToBigEndian(deep[x].green(), out + 2);
        qToBigEndian(deep[x].blue(), out + 4);
        if constexpr (withAlpha) {
            qToBigEndian(deep[x].alpha(), out + 6);
        }
        out += withAlpha ? 8 : 6;
    }
}

bool isOpaqueLine(const uchar *line, int width, QImage::Format layout)
{
    if (layout == QImage::Format_RGBA64) {
        const auto *deep = pixels<QRgba64>(line);
        return std::all_of(deep, deep + width, [](QRgba64 pixel) { return pixel.isOpaque(); });
    }
    uchar common = 0xff;
    for (qsizetype x = 0; x < width; ++x) {
        common &= layout == QImage::Format_ARGB32 ? static_cast<uchar>(pixels<QRgb>(line)[x] >> 24U)
                                                  : line[4 * x + 3];
    }
    return common == 0xff;
}

} // namespace

PngRows::PngRows(const QImage &image) : source{image}, layout{layoutFor(image.format())}
{
    switch (layout) {
    case QImage::Format_Mono:
    case QImage::Format_Indexed8:
        colourType = Colour::palette;
        depth = layout == QImage::Format_Mono ? 1 : 8;
        choosePalette();
        break;
    case QImage::Format_Grayscale16:
        depth = 16;
        [[fallthrough]];
    case QImage::Format_Grayscale8:
        colourType = Colour::grey;
        break;
    case QImage::Format_RGBX64:
        depth = 16;
        break;
    case QImage::Format_RGBA64:
        depth = 16;
        [[fallthrough]];
    case QImage::Format_ARGB32:
    case QImage::Format_RGBA8888:
        colourType = !source.hasAlphaChannel() || isOpaque() ? Colour::rgb : Colour::rgba;
        break;
    default:
        break;
    }
}

int PngRows::bitsPerPixel() const
{
    switch (colourType) {
    case Colour::rgb:
        return 3 * depth;
    case Colour::rgba:
        return 4 * depth;
    default:
        return depth;
    }
}

const uchar *PngRows::line(int y)
{
    if (source.format() == layout) {
        return source.constScanLine(y);
    }
    if (converted.isNull() || y < convertedFrom || y >= convertedFrom + converted.height()) {
        convertedFrom = y - y % stripRows;
        const int rows = std::min(stripRows, source.height() - convertedFrom);
        const QImage strip{source.constScanLine(convertedFrom), source.width(), rows, source.bytesPerLine(),
                           source.format()};
        converted = strip.convertToFormat(layout);
    }
    return converted.constScanLine(y - convertedFrom);
}

bool PngRows::isOpaque()
{
    for (int y = 0; y < source.height(); ++y) {
        if (!isOpaqueLine(line(y), source.width(), layout)) {
            return false;
        }
    }
    return true;
}

void PngRows::choosePalette()
{
    constexpr QRgb black = 0xff000000U;
    constexpr QRgb white = 0xffffffffU;
    colours = source.colorTable();
    if (depth == 1) {
        colours.resize(std::min<qsizetype>(colours.size(), 2));
        colours = colours.isEmpty() ? QList<QRgb>{black, white} : colours;
        if (colours.size() == 1) {
            colours.append(white);
        }
        return;
    }
    constexpr int most = 256;
    colours.resize(std::min<qsizetype>(colours.size(), most));
    if (colours.isEmpty()) {
        for (int grey = 0; grey < most; ++grey) {
            colours.append(qRgb(grey, grey, grey));
        }
    }
    // A pixel beyond the table shows black; in a file it would be an error.
    uchar highest = 0;
    for (int y = 0; y < source.height() && colours.size() < most; ++y) {
        const uchar *indices = source.constScanLine(y);
        highest = std::max(highest, *std::max_element(indices, indices + source.width()));
    }
    while (colours.size() <= highest) {
        colours.append(black);
    }
}

QByteArray PngRows::palette() const
{
    QByteArray bytes;
    for (const QRgb colour : colours) {
        bytes.append(static_cast<char>(qRed(colour)));
        bytes.append(static_cast<char>(qGreen(colour)));
        bytes.append(static_cast<char>(qBlue(colour)));
    }
    return bytes;
}

QByteArray PngRows::paletteAlphas() const
{
    QByteArray bytes;
    for (const QRgb colour : colours) {
        bytes.append(static_cast<char>(qAlpha(colour)));
    }
    return bytes.count('\xff') == bytes.size() ? QByteArray{} : bytes;
}

void PngRows::read(int y, uchar *out)
{
    const uchar *from = line(y);
    const int width = source.width();
    const bool withAlpha = colourType == Colour::rgba;
    switch (layout) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        withAlpha ? writeWordsAsRgba(from, width, out) : writeWordsAsRgb(from, width, out);
        break;
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
        withAlpha ? writeDeep<true>(from, width, out) : writeDeep<false>(from, width, out);
        break;
    case QImage::Format_Grayscale16:
        qToBigEndian<quint16>(from, width, out);
        break;
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBA8888:
        if (!withAlpha) {
            writeThreeOfFour(from, width, out);
            break;
        }
        [[fallthrough]];
    default:
        std::copy_n(from, rowBytes(), out);
        break;
    }
}

} // namespace quilmora
