#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRgba64>
#include <QString>

#include <functional>

/// Decoders of PNG files that have nothing in common but the format.
namespace quilmora::test::pngDecoders {

/// The pixels of the picture in `file`, row by row, as 16 bits a channel, not premultiplied; empty if the
/// decoder refuses the file or finds fault with any of its checksums.
using Decode = std::function<QList<QRgba64>(const QByteArray &file)>;

struct Decoder {
    QString name;
    Decode decode;
};

/// Qt's (libpng) and libspng.
QList<Decoder> all();

/// The pixels of `image` in the same form.
QList<QRgba64> pixelsOf(const QImage &image);

} // namespace quilmora::test::pngDecoders
