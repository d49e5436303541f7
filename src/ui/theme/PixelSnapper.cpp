#include "ui/theme/PixelSnapper.h"

#include "ui/theme/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quilmora {

PixelSnapper::PixelSnapper(const QPainter &painter) : m_toPixels{painter.deviceTransform()} {}

QPointF PixelSnapper::aligned(QPointF place) const
{
    const QPointF pixels = m_toPixels.map(place);
    return m_toPixels.inverted().map(QPointF{std::round(pixels.x()), std::round(pixels.y())});
}

QRectF PixelSnapper::aligned(const QRectF &bounds) const
{
    const QRectF pixels = m_toPixels.mapRect(bounds);
    const QPointF corner{std::round(pixels.left()), std::round(pixels.top())};
    const QPointF opposite{std::round(pixels.right()), std::round(pixels.bottom())};
    return m_toPixels.inverted().mapRect(QRectF{corner, opposite});
}

double PixelSnapper::lineWidth(double width) const
{
    const double ratio = m_toPixels.m11();
    const bool wholeRatio = std::abs(ratio - std::round(ratio)) < 1e-6;
    return wholeRatio ? width : std::max(1.0, std::round(width * ratio)) / ratio;
}

double PixelSnapper::borderWidth(double width) const
{
    return lineWidth(Theme::current().borderWidth(width));
}

} // namespace quilmora
