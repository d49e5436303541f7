#include "local_service/scenes/Canvas.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <cmath>
#include <numbers>

namespace quilmora::localservice {
namespace {

void addLight(QPainter &painter, const QBrush &brush, const QPainterPath &shape)
{
    const QPainter::CompositionMode before = painter.compositionMode();
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    painter.fillPath(shape, brush);
    painter.setCompositionMode(before);
}

void addDisc(QPainter &painter, QPointF center, double radius, const QGradientStops &stops)
{
    QRadialGradient gradient{center, radius};
    gradient.setStops(stops);
    QPainterPath disc;
    disc.addEllipse(center, radius, radius);
    addLight(painter, gradient, disc);
}

} // namespace

void Canvas::fillDown(const QRectF &area, const QGradientStops &stops) const
{
    QLinearGradient gradient{area.topLeft(), area.bottomLeft()};
    gradient.setStops(stops);
    painter.fillRect(area, gradient);
}

void Canvas::glow(QPointF center, double radius, const QColor &color, double strength) const
{
    addDisc(painter, center, radius,
            {{0, faded(color, strength)},
             {0.25, faded(color, strength * 0.55)},
             {0.55, faded(color, strength * 0.18)},
             {1, faded(color, 0)}});
}

void Canvas::rays(QPointF center, double radius, int count, const QColor &color, double strength)
{
    QRadialGradient light{center, radius};
    light.setStops({{0, faded(color, strength)}, {0.5, faded(color, strength * 0.45)}, {1, faded(color, 0)}});
    const double step = 2 * std::numbers::pi / count;
    for (int i = 0; i < count; ++i) {
        const double angle = step * (i + between(-0.2, 0.2));
        const double half = step * between(0.10, 0.30);
        QPainterPath wedge{center};
        wedge.lineTo(center + radius * QPointF{std::cos(angle - half), std::sin(angle - half)});
        wedge.lineTo(center + radius * QPointF{std::cos(angle + half), std::sin(angle + half)});
        addLight(painter, light, wedge);
    }
}

void Canvas::bokeh(int count, double largest, const QColor &color, double strength)
{
    for (int i = 0; i < count; ++i) {
        const double x = between(0, 1);
        const QPointF center = at(x, between(0, 1));
        const double own = strength * between(0.35, 1);
        addDisc(painter, center, between(0.25, 1) * largest / 2,
                {{0, faded(color, own * 0.55)},
                 {0.82, faded(color, own * 0.75)},
                 {0.93, faded(color.lighter(130), own)},
                 {1, faded(color, 0)}});
    }
}

void Canvas::skyline(const QRectF &area, double narrowest, const QColor &body, const QColor &light,
                     double lit)
{
    const double cell = narrowest / 4;
    for (double left = area.left() - narrowest * 0.3; left < area.right();) {
        const double broad = between(narrowest, 2 * narrowest);
        const double tall = between(0.35, 1);
        const QRectF building{left, area.bottom() - tall * area.height(), broad, tall * area.height()};
        painter.fillRect(building, body);
        if (tall > 0.6) {
            painter.fillRect(building.adjusted(broad * 0.22, -broad * 0.25, -broad * 0.22, 0), body);
        }
        const int columns = static_cast<int>((broad - cell) / cell);
        const int windows = columns * static_cast<int>((building.height() - 2 * cell) / (cell * 1.25));
        for (int i = 0; i < windows; ++i) {
            const int floor = i / columns;
            const QPointF corner{left + cell * (i % columns + 0.4),
                                 building.top() + cell * (floor * 1.25 + 1)};
            if (between(0, 1) < lit) {
                painter.fillRect(QRectF{corner, QSizeF{cell * 0.55, cell * 0.7}},
                                 faded(light, between(0.35, 1)));
            }
        }
        left += broad * between(0.92, 1.12);
    }
}

} // namespace quilmora::localservice
