#include "screens/common/Shapes.h"

#include <algorithm>

namespace quilmora
{
namespace
{

/// How far along each side a continuous corner reaches, and where its control point lies, in radii.
constexpr double reach = 1.28;
constexpr double control = 0.36;

void addCorner(QPainterPath &path, QPointF from, QPointF corner, QPointF to, double share)
{
    const auto towardsCorner = [&](QPointF start) {
        return start + (corner - start) * share;
    };
    path.lineTo(from);
    path.cubicTo(towardsCorner(from), towardsCorner(to), to);
}

} // namespace

QPainterPath continuousRoundedRect(const QRectF &bounds, double radius)
{
    const double extent = std::min({radius * reach, bounds.width() / 2, bounds.height() / 2});
    const double share = 1.0 - control * radius / std::max(extent, 1e-9) * 0.9;
    const QPointF across{extent, 0};
    const QPointF down{0, extent};
    QPainterPath path{bounds.topLeft() + across};
    addCorner(path, bounds.topRight() - across, bounds.topRight(), bounds.topRight() + down, share);
    addCorner(path, bounds.bottomRight() - down, bounds.bottomRight(), bounds.bottomRight() - across, share);
    addCorner(path, bounds.bottomLeft() + across, bounds.bottomLeft(), bounds.bottomLeft() - down, share);
    addCorner(path, bounds.topLeft() + down, bounds.topLeft(), bounds.topLeft() + across, share);
    path.closeSubpath();
    return path;
}

QPainterPath roundedRect(const QRectF &bounds, double radius)
{
    QPainterPath path;
    path.addRoundedRect(bounds, radius, radius);
    return path;
}

QPainterPath capsule(const QRectF &bounds)
{
    return roundedRect(bounds, std::min(bounds.width(), bounds.height()) / 2);
}

QRectF insideLine(const QRectF &bounds, double lineWidth)
{
    const double half = lineWidth / 2;
    return bounds.adjusted(half, half, -half, -half);
}

} // namespace quilmora
