#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

/// Writing of PNG files, for those who wait for it: several times faster than Qt's own writer, at a
/// few percent of its size more (benchmarks/README.md).
namespace quilmora::pngEncoder {

/// How hard the bytes are squeezed, from 1, the fastest, to 12. In grain there is nothing to be found that
/// repeats, so looking for it only takes time; in smooth pictures there is.
constexpr int grainyLevel = 1;
constexpr int smoothLevel = 2;

/// The largest chunk of compressed bytes, so that a reader that checks a chunk before it uses it needs little
/// room.
constexpr qsizetype largestChunk = qsizetype{1} << 20;

/// `image`, whose colours must be in sRGB, as the bytes of a PNG file, marked as sRGB and with nothing else
/// beside the pixels: neither comments nor a resolution. Empty for a null image and when the memory does not
/// suffice. The level is chosen by the picture unless one is given. At its peak holds the filtered rows,
/// which take what the pixels take in the file before compression, and the compressed ones; then the latter
/// and the file. May be called from any thread.
QByteArray encode(const QImage &image, std::optional<int> level = std::nullopt);

} // namespace quilmora::pngEncoder
