#include "local_service/cover/SoftLayer.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quilmora
{
namespace
{

constexpr qsizetype channels = 4;
/// Three box blurs in a row come close to a Gaussian one.
constexpr int passes = 3;

/// Averages `count` pixels that lie `step` bytes apart over 2 * radius + 1 neighbours, the edge repeated.
void blurLine(uchar *line, qsizetype count, qsizetype step, qsizetype radius, std::vector<uchar> &copy)
{
    for (qsizetype i = 0; i < count; ++i) {
        std::copy_n(line + i * step, channels, copy.data() + i * channels);
    }
    const qsizetype window = 2 * radius + 1;
    for (qsizetype channel = 0; channel < channels; ++channel) {
        const uchar *const values = copy.data() + channel;
        const auto at = [values, count](qsizetype i) {
            return qsizetype{values[std::clamp<qsizetype>(i, 0, count - 1) * channels]};
        };
        qsizetype sum = 0;
        for (qsizetype i = -radius; i <= radius; ++i) {
            sum += at(i);
        }
        for (qsizetype i = 0; i < count; ++i) {
            line[i * step + channel] = static_cast<uchar>((sum + radius) / window);
            sum += at(i + radius + 1) - at(i - radius);
        }
    }
}

void blur(QImage &image, int radius)
{
    const qsizetype width = image.width();
    const qsizetype height = image.height();
    uchar *const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    std::vector<uchar> copy(static_cast<std::size_t>(std::max(width, height) * channels));
    for (int pass = 0; pass < passes; ++pass) {
        for (qsizetype y = 0; y < height; ++y) {
            blurLine(bits + y * stride, width, channels, radius, copy);
        }
        for (qsizetype x = 0; x < width; ++x) {
            blurLine(bits + x * channels, height, stride, radius, copy);
        }
    }
}

QSize shrunk(QSize size, double scale)
{
    const auto side = [scale](int length) {
        return std::max(1, static_cast<int>(std::lround(length * scale)));
    };
    return {side(size.width()), side(size.height())};
}

} // namespace

SoftLayer::SoftLayer(QSize coverSize, double scale)
    : m_coverSize{coverSize},
      m_scale{scale},
      m_image{shrunk(coverSize, scale), QImage::Format_ARGB32_Premultiplied}
{
    m_image.fill(Qt::transparent);
    m_painter.begin(&m_image);
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.scale(double(m_image.width()) / coverSize.width(),
                    double(m_image.height()) / coverSize.height());
}

void SoftLayer::putOnto(QPainter &cover, double radius, QPainter::CompositionMode mode)
{
    m_painter.end();
    const int smallRadius = static_cast<int>(std::lround(radius * m_scale / passes * 2));
    if (smallRadius > 0) {
        blur(m_image, smallRadius);
    }
    cover.save();
    cover.setRenderHint(QPainter::SmoothPixmapTransform);
    cover.setCompositionMode(mode);
    cover.drawImage(QRect{QPoint{}, m_coverSize}, m_image);
    cover.restore();
}

} // namespace quilmora
