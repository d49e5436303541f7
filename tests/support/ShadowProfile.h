#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>

namespace quilmora::test {

class Drawing;

/// A shadow as it should be.
struct ExpectedShadow {
    QColor color; ///< With its opacity.
    double blurRadius;
    QPointF offset;
};

/// Compares the shadow that is drawn behind a shape with what a bell curve of half the blur radius gives,
/// across the middle of its upper and lower edge and, unless `roundEnds`, of its left and right one. Empty
/// when it is so; otherwise where it differs. `shape` in the coordinates of the drawn widget.
QString shadowDifference(const Drawing &drawing, const QRectF &shape, const ExpectedShadow &expected,
                         bool roundEnds = false);

} // namespace quilmora::test
