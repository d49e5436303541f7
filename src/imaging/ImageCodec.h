#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <limits>

/// Decoding of picture files and encoding as PNG, for the whole application. Any thread.
namespace quilmora::imageCodec {

/// Larger pictures are not decoded; unlimited by default.
struct Limits {
    qint64 pixels = std::numeric_limits<qint64>::max(); ///< Of any depth.
    qint64 fileBytes = std::numeric_limits<qint64>::max();
};

/// The first picture in `bytes`, its format detected by content: upright (the camera's orientation applied)
/// and in sRGB. Null when it is of no known bitmap format, and at once when it has more pixels than the
/// limit. Gives the readable part of a truncated picture, since responses are paid for.
QImage decode(const QByteArray &bytes, const Limits &limits = {});

/// The same for the regular file at `path`; null also when there is none and when it cannot be read.
QImage decodeFile(const QString &path, const Limits &limits = {});

/// `image`, converted to sRGB, as pngEncoder::encode writes it.
QByteArray encodePng(const QImage &image);

} // namespace quilmora::imageCodec
