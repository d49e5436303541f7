#pragma once

#include <QColorTransform>
#include <QImage>
#include <QSize>

#include <optional>

class QIODevice;
struct png_struct_def;
struct png_info_def;

namespace quilmora {

/// The rows of a PNG, one after the other from the top: for those who need not hold the whole picture. Only
/// the common kind: what is interlaced or has a camera's orientation is left to other readers.
class PngReader final
{
public:
    /// Reads from `device` as it goes on; the device must be open and outlive this.
    explicit PngReader(QIODevice &device);
    Q_DISABLE_COPY_MOVE(PngReader)
    ~PngReader();

    /// Reads what comes before the rows. False when that is damaged, or the picture not of the common kind.
    bool open();

    // Of a picture that has been opened:
    QSize size() const { return m_pictureSize; }
    int channels() const { return m_channelCount; } ///< Grey; grey, alpha; R, G, B; or R, G, B, alpha.
    int depth() const { return m_bits; }            ///< Bits a sample: 8, or 16 in the machine's byte order.
    qsizetype bytesPerRow() const { return m_rowBytes; }

    /// Reads the next row, in sRGB, into `row`, which has room for it. False when the file is cut or damaged
    /// there, after which nothing more can be read.
    bool read(uchar *row);

    /// Reads what follows the last row; false when the file is cut or damaged there.
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
