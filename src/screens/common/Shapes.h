#pragma once

#include <QPainterPath>
#include <QRectF>

namespace quilmora
{

/// A rounded rectangle whose corners flow into its sides without a sudden change of curvature, as far as the
/// sides are long enough. With a radius of half the height it is a capsule.
QPainterPath continuousRoundedRect(const QRectF &bounds, double radius);

/// A rectangle with circular corners.
QPainterPath roundedRect(const QRectF &bounds, double radius);

/// A rectangle with fully rounded ends.
QPainterPath capsule(const QRectF &bounds);

/// `bounds` moved inwards so that a line of that width drawn along it stays inside.
QRectF insideLine(const QRectF &bounds, double lineWidth);

} // namespace quilmora
