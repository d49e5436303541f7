#include "imaging/PngRows.h"

#include <QRgba64>
#include <QtEndian>

#include <algorithm>

namespace quilmora {
namespace {

/// Enough rows for a fast conversion, few enough for the processor's cache.
constexpr int stripRows = 64;

void writeDeep(const QRgba64 *pixels, int width, bool withAlpha, uchar *out)
{
    for (const QRgba64 *pixel = pixels; pixel < pixels + width; ++pixel) {
        qToBigEndian(pixel->red(), out);
        qToBigEndian(pixel->green(), out + 2);
        qToBigEndian(pixel->blue(), out + 4);
        if (withAlpha) {
            qToBigEndian(pixel->alpha(), out + 6);
        }
        out += withAlpha ? 8 : 6;
    }
}

} // namespace

PngRows::PngRows(const QImage &image)
    : m_image{image},
      m_isDeep{image.format() == QImage::Format_Grayscale16 || image.pixelFormat().redSize() > 8}
{
    if (image.format() == QImage::Format_Grayscale8 || image.format() == QImage::Format_Grayscale16) {
        m_colorType = ColorType::gray;
        m_channels = 1;
        m_format = image.format();
    } else if (image.hasAlphaChannel() && !isOpaque()) {
        m_colorType = ColorType::rgba;
        m_channels = 4;
        m_format = m_isDeep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888;
    } else if (m_isDeep) {
        // Not RGBX64: Qt converts ten bits a sample to that through eight.
        m_format = QImage::Format_RGBA64;
    }
}

QImage PngRows::strip(int fromRow, QImage::Format format) const
{
    const int rows = std::min(stripRows, m_image.height() - fromRow);
    QImage part{m_image.constScanLine(fromRow), m_image.width(), rows, m_image.bytesPerLine(),
                m_image.format()};
    part.setColorTable(m_image.colorTable());
    return part.convertToFormat(format);
}

bool PngRows::isOpaque() const
{
    for (int y = 0; y < m_image.height(); y += stripRows) {
        const QImage alphas = strip(y, QImage::Format_Alpha8);
        for (int row = 0; row < alphas.height(); ++row) {
            const uchar *line = alphas.constScanLine(row);
            if (!std::all_of(line, line + alphas.width(), [](uchar alpha) { return alpha == 0xff; })) {
                return false;
            }
        }
    }
    return true;
}

void PngRows::read(int y, uchar *out)
{
    if (m_strip.isNull() || y < m_stripFrom || y >= m_stripFrom + m_strip.height()) {
        m_stripFrom = y - y % stripRows;
        m_strip = strip(m_stripFrom, m_format);
    }
    const uchar *line = m_strip.constScanLine(y - m_stripFrom);
    if (m_format == QImage::Format_RGBA64) {
        writeDeep(static_cast<const QRgba64 *>(static_cast<const void *>(line)), m_image.width(),
                  m_colorType == ColorType::rgba, out);
    } else if (m_format == QImage::Format_Grayscale16) {
        qToBigEndian<quint16>(line, m_image.width(), out);
    } else {
        std::copy_n(line, rowBytes(), out);
    }
}

} // namespace quilmora
