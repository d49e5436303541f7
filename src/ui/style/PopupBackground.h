#pragma once

class QColor;
class QPainter;
class QRect;

/// The background of menus and sheets.
namespace quilmora::popupBackground {

/// Whether windows can have translucent parts, which on X11 takes a compositor.
bool canBeTranslucent();

/// Fills the bounds, with round corners, and draws a hairline inside the edge.
void draw(QPainter &painter, const QRect &bounds, double cornerRadius, const QColor &color);

} // namespace quilmora::popupBackground
