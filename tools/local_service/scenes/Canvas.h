#pragma once

#include "local_service/cover/Palette.h"

#include <QBrush>
#include <QPointF>
#include <QRandomGenerator>
#include <QRectF>

class QPainter;

namespace quilmora::localservice {

/// What a backdrop is painted on and with. Lengths are cover pixels. All light is added to what is there.
struct Canvas {
    QPainter &painter;
    QSizeF size;
    QPointF focus; ///< Where the light comes from: behind the presenter.
    Palette palette;
    QRandomGenerator random; ///< Of a fixed seed, so that a request always gives the same picture.

    double width() const { return size.width(); }
    double height() const { return size.height(); }
    double reach() const { return qMax(width(), height()); }
    /// A thousandth of the shorter side, for things that keep their shape.
    double unit() const { return qMin(width(), height()) / 1000; }
    QPointF at(double x, double y) const { return {x * width(), y * height()}; }
    QRectF whole() const { return {QPointF{}, size}; }
    double between(double low, double high) { return low + (high - low) * random.generateDouble(); }

    /// Fills `area` from top to bottom with the colours at the given shares of its height.
    void fillDown(const QRectF &area, const QGradientStops &stops) const;
    /// A soft disc of light that is `strength` (0 to 1) in its middle and nothing at `radius`.
    void glow(QPointF center, double radius, const QColor &color, double strength) const;
    /// Wedges of light from `center` out to `radius`, `count` of them, of uneven width.
    void rays(QPointF center, double radius, int count, const QColor &color, double strength);
    /// Discs of unfocused lights anywhere, up to `largest` pixels across.
    void bokeh(int count, double largest, const QColor &color, double strength);
    /// Buildings from `narrowest` to twice that width, side by side on the lower edge of `area`, that reach
    /// up to its upper edge at most; a share of `lit` of their windows shines.
    void skyline(const QRectF &area, double narrowest, const QColor &body, const QColor &light, double lit);
};

} // namespace quilmora::localservice
