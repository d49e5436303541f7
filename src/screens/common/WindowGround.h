#pragma once

class QColor;
class QPainter;
class QRect;

/// The ground of menus and of the panels of sheets.
namespace quilmora::windowGround
{

constexpr double menuRadius = 6; ///< Of the corners of a menu.

/// Whether windows can have translucent parts. On X11 that takes a compositor; without one they are black.
bool canBeTranslucent();

/// Fills the bounds, with round corners, and draws a hairline along the edge, inside.
void draw(QPainter &painter, const QRect &bounds, double cornerRadius, const QColor &color);

} // namespace quilmora::windowGround
