#include "platform/PngEncoder.h"

#include "platform/LargeBlock.h"
#include "platform/PngFilter.h"
#include "platform/PngRows.h"

#include <QtEndian>

#include <algorithm>
#include <libdeflate.h>
#include <memory>
#include <new>

namespace quilmora::pngEncoder
{
namespace
{

/// How large the residues of a grainy picture are on average, in quarters.
constexpr quint64 grainyQuarters = 7;

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes{sizeof value, '\0'};
    qToBigEndian(value, bytes.data());
    return bytes;
}

void appendChunk(QByteArray &file, const char (&type)[5], const char *data, qsizetype size)
{
    constexpr qsizetype typeLength = 4;
    file += bigEndian(static_cast<quint32>(size));
    const qsizetype summedFrom = file.size();
    file.append(type, typeLength);
    file.append(data, size);
    file += bigEndian(libdeflate_crc32(0, file.constData() + summedFrom,
                                       static_cast<std::size_t>(file.size() - summedFrom)));
}

void appendChunk(QByteArray &file, const char (&type)[5], const QByteArray &data)
{
    appendChunk(file, type, data.constData(), data.size());
}

/// What the compressor gets.
struct Filtered {
    LargeBlock rows; ///< One after the other, each led by the number of its filter.
    bool isGrainy;
};

Filtered filtered(PngRows &rows)
{
    const qsizetype stride = 1 + rows.rowBytes();
    Filtered result{LargeBlock{stride * rows.height()}, false};
    uchar *out = result.rows.bytes();
    if (rows.colour() == PngRows::Colour::palette) {
        // Neighbouring numbers in a palette need not be alike.
        for (int y = 0; y < rows.height(); ++y, out += stride) {
            out[0] = 0;
            rows.read(y, out + 1);
        }
        return result;
    }
    PngFilter filter{rows.rowBytes(), rows.pixelBytes()};
    quint64 magnitudes = 0;
    for (int y = 0; y < rows.height(); ++y, out += stride) {
        rows.read(y, filter.row());
        magnitudes += filter.filterTo(out);
    }
    result.isGrainy = 4 * magnitudes >= grainyQuarters * static_cast<quint64>(result.rows.size());
    return result;
}

/// A zlib stream of `raw`.
LargeBlock compressed(const LargeBlock &raw, int level)
{
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor{
        libdeflate_alloc_compressor(level), &libdeflate_free_compressor};
    if (!compressor) {
        throw std::bad_alloc{};
    }
    const auto rawSize = static_cast<std::size_t>(raw.size());
    const std::size_t room = libdeflate_zlib_compress_bound(compressor.get(), rawSize);
    LargeBlock stream{static_cast<qsizetype>(room)};
    stream.shorten(static_cast<qsizetype>(
        libdeflate_zlib_compress(compressor.get(), raw.bytes(), rawSize, stream.bytes(), room)));
    return stream;
}

LargeBlock zlibStream(PngRows &rows, std::optional<int> level)
{
    const Filtered raw = filtered(rows);
    return compressed(raw.rows, level.value_or(raw.isGrainy ? grainyLevel : smoothLevel));
}

QByteArray fileOf(const QImage &image, std::optional<int> level)
{
    PngRows rows{image};
    const LargeBlock stream = zlibStream(rows, level);

    QByteArray file;
    constexpr qsizetype chunkFrame = 12;
    constexpr qsizetype roomForTheRest = 2048;
    file.reserve(stream.size() + (stream.size() / largestChunk + 1) * chunkFrame + roomForTheRest);
    file += "\x89PNG\r\n\x1a\n";
    QByteArray header = bigEndian(static_cast<quint32>(image.width())) +
                        bigEndian(static_cast<quint32>(image.height())) +
                        static_cast<char>(rows.bitsPerSample()) + static_cast<char>(rows.colour());
    // Compression and filters are the only ones there are; not interlaced.
    header.append(3, '\0');
    appendChunk(file, "IHDR", header);
    constexpr char perceptualIntent = 0;
    appendChunk(file, "sRGB", &perceptualIntent, 1);
    if (rows.colour() == PngRows::Colour::palette) {
        appendChunk(file, "PLTE", rows.palette());
        if (const QByteArray alphas = rows.paletteAlphas(); !alphas.isEmpty()) {
            appendChunk(file, "tRNS", alphas);
        }
    }
    for (qsizetype start = 0; start < stream.size(); start += largestChunk) {
        appendChunk(file, "IDAT", stream.chars() + start, std::min(largestChunk, stream.size() - start));
    }
    appendChunk(file, "IEND", nullptr, 0);
    return file;
}

} // namespace

QByteArray encode(const QImage &image, std::optional<int> level)
{
    if (image.isNull()) {
        return {};
    }
    try {
        return fileOf(image, level);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

} // namespace quilmora::pngEncoder
