#pragma once

#include <QBitmap>

class QColor;
class QPainter;

/// The ground of windows of our own shape: sheets and menus.
namespace quilmora::windowGround
{

/// Whether such a window has to be cut to its shape by a mask. Translucent corners need a compositor there,
/// and are black without one.
bool needsMask();

/// The shape to cut a window of those bounds to.
QBitmap mask(const QRect &bounds, double cornerRadius);

/// Fills the window and draws a hairline along its edge, inside.
void draw(QPainter &painter, const QRect &bounds, double cornerRadius, const QColor &color);

} // namespace quilmora::windowGround
