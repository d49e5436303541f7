#pragma once

#include "local_service/cover/ColourPalette.h"

#include <QPointF>
#include <QRandomGenerator>
#include <QSizeF>

class QPainter;

namespace quilmora
{

/// What a scene paints on and with. Lengths are cover pixels.
struct SceneStage {
    QPainter &painter;
    QSizeF size;
    QPointF focus; ///< Where the light comes from: behind the presenter.
    ColourPalette palette;
    QRandomGenerator random; ///< Seeded from the request, so that a request always gives the same picture.

    double width() const { return size.width(); }
    double height() const { return size.height(); }
    /// A thousandth of the shorter side, for things that keep their shape.
    double unit() const { return qMin(size.width(), size.height()) / 1000; }
    QPointF at(double x, double y) const { return {x * size.width(), y * size.height()}; }
    double between(double low, double high) { return low + (high - low) * random.generateDouble(); }
};

} // namespace quilmora
