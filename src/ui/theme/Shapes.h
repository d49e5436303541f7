#pragma once

#include <QImage>
#include <QPainterPath>
#include <QPixmap>
#include <QRectF>

namespace quilmora {

/// A rounded rectangle without a jump of the curvature where the corners begin, as far as the sides are long
/// enough. With a radius of half the height it is a capsule.
QPainterPath continuousRoundedRect(const QRectF &bounds, double radius);

/// A rectangle with circular corners.
QPainterPath roundedRect(const QRectF &bounds, double radius);

/// A rectangle with fully rounded ends.
QPainterPath capsule(const QRectF &bounds);

/// `bounds` moved inwards so that a line of that width drawn along it stays inside.
QRectF insideLine(const QRectF &bounds, double lineWidth);

/// `image` scaled to `size` and cut along `outline`, both in physical pixels.
QPixmap cutPixmap(const QImage &image, QSize size, const QPainterPath &outline, double devicePixelRatio);

} // namespace quilmora
