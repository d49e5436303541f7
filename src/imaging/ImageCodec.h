#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <limits>

/// Decoding of picture files into bitmaps and encoding of bitmaps as PNG, for the whole application.
/// All functions may be called from any thread.
namespace quilmora::imageCodec {

/// Beyond these a picture is not decoded; unlimited unless given.
struct Limits {
    qint64 pixels = std::numeric_limits<qint64>::max(); ///< Of the picture, whatever its depth in the file.
    qint64 fileBytes = std::numeric_limits<qint64>::max();
};

/// The first picture in `bytes`, judged by content: upright (the camera's orientation applied) and in sRGB.
/// Null when the bytes are no picture of a known bitmap format, and at once when the picture has more pixels
/// than the limit. Of a truncated picture, what its format lets be read is given: a response that was paid
/// for is worth more than its missing end.
QImage decode(const QByteArray &bytes, const Limits &limits = {});

/// The same for the regular file at `path`; null also when there is none and when it cannot be read.
QImage decodeFile(const QString &path, const Limits &limits = {});

/// `image` as the bytes of a PNG file: its pixels in sRGB, without any comments. Empty for a null image and
/// when the memory does not suffice.
QByteArray encodePng(const QImage &image);

} // namespace quilmora::imageCodec
