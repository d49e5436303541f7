#pragma once

#include <QImage>

namespace quilmora {

/// The pixels of an image as the rows of a PNG file: gray, RGB or RGBA with 8 or 16 bits a sample, whichever
/// is lossless; an alpha channel that is opaque throughout is left out. Converts a few rows at a time.
class PngRows final
{
public:
    /// The image must not be null.
    explicit PngRows(const QImage &image);

    /// The values are those of the file format.
    enum class ColorType : uchar { gray = 0, rgb = 2, rgba = 6 };

    ColorType colorType() const { return m_colorType; }
    int bitsPerSample() const { return m_isDeep ? 16 : 8; }
    int height() const { return m_image.height(); }
    qsizetype pixelBytes() const { return qsizetype{m_channels} * (m_isDeep ? 2 : 1); }
    qsizetype rowBytes() const { return m_image.width() * pixelBytes(); }

    /// Writes row `y`, `rowBytes` bytes, to `out`. Fastest from the top down.
    void read(int y, uchar *out);

private:
    QImage strip(int fromRow, QImage::Format format) const;
    bool isOpaque() const;

    const QImage m_image;
    const bool m_isDeep;
    ColorType m_colorType = ColorType::rgb;
    int m_channels = 3;
    QImage::Format m_format = QImage::Format_RGB888; ///< Of the strips.
    QImage m_strip;
    int m_stripFrom = 0; ///< The first row of the strip.
};

} // namespace quilmora
