#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

/// Writes PNG files several times faster than Qt, and a few percent larger (benchmarks/README.md).
namespace quilmora::pngEncoder {

/// Compression levels of libdeflate, from 1, the fastest, to 12. Only smooth pictures have repetitions.
constexpr int grainyLevel = 1;
constexpr int smoothLevel = 2;

/// The largest IDAT chunk, in bytes: readers keep a chunk in memory to check it.
constexpr qsizetype largestChunk = qsizetype{1} << 20;

/// `image`, whose colors must be in sRGB, as the bytes of a PNG file, marked as sRGB, without comments or a
/// resolution. Empty for a null image and when memory is exhausted. The level is chosen by the
/// picture unless one is given. Allocates the filtered and the compressed rows together, then the compressed
/// rows and the file. Any thread.
QByteArray encode(const QImage &image, std::optional<int> level = std::nullopt);

} // namespace quilmora::pngEncoder
