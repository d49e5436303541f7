#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/// Decoding of picture files into bitmaps and encoding of bitmaps as PNG, for the whole application.
/// All functions may be called from any thread.
namespace quilmora::imageCodec
{

/// The largest bitmap that a picture may decode to, in mebibytes; larger ones are refused. Room for a
/// photo of 200 megapixels at four bytes a pixel.
constexpr int maximumBitmapMebibytes = 1024;

/// The most pixels that a picture may have, however few bytes each takes: drawing it takes four.
constexpr qint64 maximumPixels = qint64{maximumBitmapMebibytes} * 1024 * 1024 / 4;

/// The most pixels that a picture in an answer may have: more than ten times the largest cover that is asked
/// for, so that what comes from a stranger cannot take the machine's memory.
constexpr qint64 maximumAnswerPixels = qint64{64} * 1024 * 1024;

/// The largest picture file that is read, in bytes; larger ones are refused.
constexpr qint64 maximumFileBytes = qint64{512} * 1024 * 1024;

/// The first picture in `bytes`, judged by content: upright (the camera's orientation applied) and in sRGB.
/// Null when the bytes are no picture of a known bitmap format, and at once when the picture has more than
/// maximumAnswerPixels. Of a picture that was cut short, what its
/// format lets be read is given: an answer that was paid for is worth more than its missing end.
QImage decode(const QByteArray &bytes);

/// The same for the regular file at `path`; null also when there is none, when it cannot be read and when it
/// was cut short.
QImage decodeFile(const QString &path);

/// `image` as the bytes of a PNG file: its pixels in sRGB, without any comments. Empty for a null image, for
/// one of more pixels than are decoded, and when the memory does not suffice.
QByteArray encodePng(const QImage &image);

} // namespace quilmora::imageCodec
