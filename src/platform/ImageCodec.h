#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

class QIODevice;

/// Decoding of picture files into bitmaps and encoding of bitmaps as PNG, for the whole application.
/// All functions may be called from any thread.
namespace quilmora::imageCodec
{

/// The largest bitmap that a picture may decode to, in mebibytes; larger ones are refused. Room for a
/// photo of 200 megapixels at four bytes a pixel.
constexpr int maximumBitmapMebibytes = 1024;

/// The first picture in `bytes`, judged by content: upright (the camera's orientation applied) and in sRGB.
/// Null when the bytes are not a whole picture of a known bitmap format.
QImage decode(const QByteArray &bytes);

/// The same for the regular file at `path`; null also when there is none or it cannot be read.
QImage decodeFile(const QString &path);

/// `image` as the bytes of a PNG file. Empty for a null image.
QByteArray encodePng(const QImage &image);

} // namespace quilmora::imageCodec
