#include "ui/theme/Shapes.h"

#include <QPainter>

#include <algorithm>
#include <numbers>

namespace quilmora {
namespace {

/// Where a corner of radius 1 crosses its diagonal, on each axis from the tip; that of a circle.
constexpr double apex = 1 - 1 / std::numbers::sqrt2;

/// One half of a corner, a cubic from the side to the diagonal: where it leaves the side and its two control
/// points, in radii from the tip; x along the side, y away from it.
struct HalfCorner {
    double start;
    QPointF first;
    QPointF second;
};

/// `smoothness` 0 gives an eighth of a circle. 1 gives a curve that leaves the side without any curvature and
/// has the circle's on the diagonal, so that there is no jump between.
HalfCorner halfCorner(double smoothness)
{
    // Length of the handles that make a cubic an eighth of a circle.
    constexpr double handle = 0.265216;
    constexpr double slanted = handle / std::numbers::sqrt2;
    constexpr HalfCorner circle{1, {1 - handle, 0}, {apex + slanted, apex - slanted}};
    constexpr HalfCorner smooth{1.5, {2 * apex + 3 * std::numbers::sqrt2 * apex * apex, 0}, {2 * apex, 0}};
    const auto mixed = [smoothness](auto from, auto to) {
        return from + (to - from) * smoothness;
    };
    return {mixed(circle.start, smooth.start), mixed(circle.first, smooth.first),
            mixed(circle.second, smooth.second)};
}

/// How smooth a corner of that radius can be on a side that it shares with another one.
double smoothnessOn(double side, double radius)
{
    return std::clamp((side / 2 / radius - 1) / 0.5, 0.0, 1.0);
}

/// Draws on to a corner and around it. `in` and `out` lead from the tip along its two sides, one radius far.
void addCorner(QPainterPath &path, QPointF tip, QPointF in, const HalfCorner &before, QPointF out,
               const HalfCorner &after)
{
    path.lineTo(tip + in * before.start);
    path.cubicTo(tip + in * before.first.x(), tip + in * before.second.x() + out * before.second.y(),
                 tip + (in + out) * apex);
    path.cubicTo(tip + out * after.second.x() + in * after.second.y(), tip + out * after.first.x(),
                 tip + out * after.start);
}

} // namespace

QPainterPath continuousRoundedRect(const QRectF &bounds, double radius)
{
    const double used = std::min({radius, bounds.width() / 2, bounds.height() / 2});
    if (used <= 0) {
        return roundedRect(bounds, 0);
    }
    const HalfCorner level = halfCorner(smoothnessOn(bounds.width(), used));
    const HalfCorner upright = halfCorner(smoothnessOn(bounds.height(), used));
    const QPointF right{used, 0};
    const QPointF down{0, used};
    QPainterPath path{bounds.topLeft() + right * level.start};
    addCorner(path, bounds.topRight(), -right, level, down, upright);
    addCorner(path, bounds.bottomRight(), -down, upright, -right, level);
    addCorner(path, bounds.bottomLeft(), right, level, -down, upright);
    addCorner(path, bounds.topLeft(), down, upright, right, level);
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

QPixmap cutPixmap(const QImage &image, QSize size, const QPainterPath &outline, double devicePixelRatio)
{
    QPixmap pixmap{size};
    pixmap.fill(Qt::transparent);
    QPainter painter{&pixmap};
    painter.setRenderHint(QPainter::Antialiasing);
    // Filled with a brush, since the edge of a clip is not antialiased.
    painter.fillPath(outline, QBrush{image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)});
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

} // namespace quilmora
