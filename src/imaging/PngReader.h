#pragma once

#include <QColorTransform>
#include <QImage>
#include <QSize>

#include <optional>

class QIODevice;
struct png_struct_def;
struct png_info_def;

namespace quilmora {

/// The rows of a PNG from the top down. Not for interlaced pictures and those with an EXIF orientation.
class PngReader final
{
public:
    /// `device` must be open and outlive this.
    explicit PngReader(QIODevice &device);
    Q_DISABLE_COPY_MOVE(PngReader)
    ~PngReader();

    /// Reads what comes before the rows. False when that is damaged or the picture is not supported.
    bool open();

    // Of a picture that has been opened:
    QSize size() const { return m_pictureSize; }
    int channels() const { return m_channelCount; } ///< Gray; gray, alpha; R, G, B; or R, G, B, alpha.
    int depth() const { return m_bits; }            ///< Bits a sample: 8, or 16 in the machine's byte order.
    qsizetype bytesPerRow() const { return m_rowBytes; }

    /// Reads the next row, in sRGB, into `row`. False, for good, when the file is truncated or damaged there.
    bool read(uchar *row);

    /// Reads what follows the last row; false when that is truncated or damaged.
    bool finish();

private:
    void prepareRows();

    png_struct_def *m_png;
    png_info_def *m_info = nullptr;
    QSize m_pictureSize;
    int m_channelCount = 0;
    int m_bits = 0;
    qsizetype m_rowBytes = 0;
    std::optional<QColorTransform> m_toSrgb;
    QImage::Format m_format = QImage::Format_Invalid; ///< Of rows that are to be transformed.
};

} // namespace quilmora
