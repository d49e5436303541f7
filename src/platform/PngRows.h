#pragma once

#include <QByteArray>
#include <QImage>

namespace quilmora
{

/// The pixels of an image as the rows of a PNG file. Depth and channels stay: greys, colours with and without
/// alpha, of 8 or 16 bits a sample, and palettes of 1 or 8 bits a pixel. Other formats go to the one of these
/// that holds them; an alpha channel in which every pixel is opaque is left out. Rows are converted as they
/// are read, so no second bitmap comes into being.
class PngRows final
{
    Q_DISABLE_COPY_MOVE(PngRows)

public:
    /// The image must not be null.
    explicit PngRows(const QImage &image);
    ~PngRows() = default;

    enum class Colour : uchar { grey = 0, rgb = 2, palette = 3, rgba = 6 };

    Colour colour() const { return colourType; }
    int bitsPerSample() const { return depth; }
    int height() const { return source.height(); }
    qsizetype rowBytes() const { return (qsizetype{source.width()} * bitsPerPixel() + 7) / 8; }
    /// As the format's filters count them: at least 1.
    qsizetype pixelBytes() const { return (bitsPerPixel() + 7) / 8; }

    /// The colours of a palette, three bytes each, and their alphas; the alphas are empty if all are opaque.
    QByteArray palette() const;
    QByteArray paletteAlphas() const;

    /// Writes row `y`, `rowBytes` bytes, to `out`. Quickest from the top down.
    void read(int y, uchar *out);

private:
    int bitsPerPixel() const;
    /// Row `y` in the layout that is read from.
    const uchar *line(int y);
    bool isOpaque();
    void choosePalette();

    const QImage source;
    const QImage::Format layout;
    Colour colourType = Colour::rgb;
    int depth = 8;
    QList<QRgb> colours; ///< Of a palette.
    QImage converted;    ///< A strip of the image in that layout, if it is not the image's own.
    int convertedFrom = 0;
};

} // namespace quilmora
