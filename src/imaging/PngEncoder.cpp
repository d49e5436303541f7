#include "imaging/PngEncoder.h"

#include "imaging/PngFilter.h"
#include "imaging/PngRows.h"

#include <QtEndian>

#include <algorithm>
#include <libdeflate.h>
#include <memory>
#include <new>

namespace quilmora::pngEncoder {
namespace {

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

/// Not initialized, since all of it is written before it is read.
struct Buffer {
    explicit Buffer(std::size_t capacity)
        : bytes{std::make_unique_for_overwrite<uchar[]>(capacity)},
          size{capacity}
    {
    }

    std::unique_ptr<uchar[]> bytes;
    std::size_t size; ///< In use.
};

/// The input of the compressor.
struct Filtered {
    Buffer rows; ///< One after the other, each led by the number of its filter type.
    bool isGrainy;
};

Filtered filtered(PngRows &rows)
{
    const qsizetype stride = 1 + rows.rowBytes();
    Filtered result{Buffer{static_cast<std::size_t>(stride * rows.height())}, false};
    uchar *out = result.rows.bytes.get();
    PngFilter filter{rows.rowBytes(), rows.pixelBytes()};
    quint64 magnitudes = 0;
    for (int y = 0; y < rows.height(); ++y, out += stride) {
        rows.read(y, filter.row());
        magnitudes += filter.filterTo(out);
    }
    result.isGrainy = 4 * magnitudes >= grainyQuarters * result.rows.size;
    return result;
}

/// A zlib stream of the rows.
Buffer compressed(const Filtered &raw, std::optional<int> level)
{
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor{
        libdeflate_alloc_compressor(level.value_or(raw.isGrainy ? grainyLevel : smoothLevel)),
        &libdeflate_free_compressor};
    if (!compressor) {
        throw std::bad_alloc{};
    }
    Buffer stream{libdeflate_zlib_compress_bound(compressor.get(), raw.rows.size)};
    stream.size = libdeflate_zlib_compress(compressor.get(), raw.rows.bytes.get(), raw.rows.size,
                                           stream.bytes.get(), stream.size);
    return stream;
}

QByteArray fileOf(const QImage &image, std::optional<int> level)
{
    PngRows rows{image};
    // The filtered rows are freed before the file is allocated.
    const Buffer stream = compressed(filtered(rows), level);
    const auto *data = static_cast<const char *>(static_cast<const void *>(stream.bytes.get()));
    const auto size = static_cast<qsizetype>(stream.size);

    QByteArray file;
    constexpr qsizetype chunkFrame = 12;
    constexpr qsizetype otherChunks = 64;
    file.reserve(size + (size / largestChunk + 1) * chunkFrame + otherChunks);
    file += "\x89PNG\r\n\x1a\n";
    QByteArray header = bigEndian(static_cast<quint32>(image.width())) +
                        bigEndian(static_cast<quint32>(image.height())) +
                        static_cast<char>(rows.bitsPerSample()) + static_cast<char>(rows.colorType());
    // Compression and filters are the only ones there are; not interlaced.
    header.append(3, '\0');
    appendChunk(file, "IHDR", header.constData(), header.size());
    constexpr char perceptualIntent = 0;
    appendChunk(file, "sRGB", &perceptualIntent, 1);
    for (qsizetype start = 0; start < size; start += largestChunk) {
        appendChunk(file, "IDAT", data + start, std::min(largestChunk, size - start));
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
