#include "screens/common/PixelGrid.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quilmora
{

PixelGrid::PixelGrid(const QPainter &painter) : toPixels{painter.deviceTransform()} {}

QPointF PixelGrid::aligned(QPointF place) const
{
    const QPointF pixels = toPixels.map(place);
    return toPixels.inverted().map(QPointF{std::round(pixels.x()), std::round(pixels.y())});
}

QRectF PixelGrid::aligned(const QRectF &bounds) const
{
    const QRectF pixels = toPixels.mapRect(bounds);
    const QPointF corner{std::round(pixels.left()), std::round(pixels.top())};
    const QPointF opposite{std::round(pixels.right()), std::round(pixels.bottom())};
    return toPixels.inverted().mapRect(QRectF{corner, opposite});
}

double PixelGrid::lineWidth(double width) const
{
    const double ratio = toPixels.m11();
    const bool wholeRatio = std::abs(ratio - std::round(ratio)) < 1e-6;
    return wholeRatio ? width : std::max(1.0, std::round(width * ratio)) / ratio;
}

} // namespace quilmora
