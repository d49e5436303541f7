#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

/// Real picture files for the tests.
namespace quilmora::test::samplePictures {

/// A picture with a gradient, an edge and a mark in its top left corner, so that turning or mirroring shows.
QImage picture(QSize size, const QColor &mark = Qt::red);

/// A picture of one colour.
QImage plain(QSize size, const QColor &color = Qt::red);

/// `image` as it comes back from a file that Quilmora wrote: the same pixels, said to be in sRGB.
QImage inSrgb(QImage image);

QByteArray png(const QImage &image);
QByteArray jpeg(const QImage &image, int quality = 90);

/// A JPEG that holds the picture in several passes, as web pages use them.
QByteArray progressiveJpeg(const QImage &image);

/// A JPEG whose camera orientation says that it has to be turned a quarter to the right to stand upright.
QByteArray sidewaysJpeg(const QImage &image);

/// A JPEG of 8 x 8 pixels with four colour components, as printers use them: one dark grey, about (64, 64,
/// 64).
QByteArray cmykJpeg();

/// A GIF of two pictures, the first red and the second blue, 2 x 2 pixels.
QByteArray animatedGif();

/// A valid PNG of exactly `size` bytes (at least 1,000): a small picture and a long comment.
QByteArray pngOfSize(qsizetype size);

/// One chunk of a PNG file, with its length and checksum. `type` is its name of four letters.
QByteArray pngChunk(const QByteArray &type, const QByteArray &data);

/// A PNG file put together by hand: its header claims `size`, `bits` a sample and the format's `colourType`
/// (0 grey, 2 colour, 3 palette, 6 colour and alpha); its data are `rows`, uncompressed and each led by its
/// filter byte, whether or not they are enough; `extra` are chunks to come before them.
QByteArray pngByHand(QSize size, char bits, char colorType, const QByteArray &rows,
                     const QByteArray &extra = {});

/// Writes `bytes` to the file at `path`, creating its folder, and gives the path; the test ends when that
/// fails.
QString write(const QString &path, const QByteArray &bytes);
/// The same with a PNG of `image`.
QString writePng(const QString &path, const QImage &image);

} // namespace quilmora::test::samplePictures
