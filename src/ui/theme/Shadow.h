#pragma once

#include <QColor>
#include <QPainterPath>
#include <QPixmap>
#include <QPointF>

class QPainter;

namespace quilmora {

/// A soft shadow behind a shape.
struct Shadow {
    QColor color;
    double blurRadius; ///< In device-independent pixels.
    QPointF offset;

    /// How far the shadow reaches beyond its shape on each side, offset not counted.
    int reach() const;

    /// Draws the shadow of `shape`, which is blurred once and cached.
    void draw(QPainter &painter, const QPainterPath &shape) const;

private:
    double resolution(double devicePixelRatio) const;
};

} // namespace quilmora
