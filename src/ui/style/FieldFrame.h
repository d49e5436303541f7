#pragma once

#include "ui/theme/Theme.h"

class QPainter;
class QRect;

namespace quilmora {

/// Draws the background and the border of a text field or editor, and the focus ring where `focused`.
void drawFieldFrame(QPainter &painter, const QRect &bounds, bool focused);

/// Draws a ring of that color in place of the focus ring of a field.
void drawFieldRing(QPainter &painter, const QRect &bounds, ColorRole role);

} // namespace quilmora
