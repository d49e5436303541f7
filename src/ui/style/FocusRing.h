#pragma once

#include "ui/theme/Theme.h"

class QPainter;
class QPainterPath;

namespace quilmora {

/// Draws the focus ring inside `outline`, the outer edge of the border. On the accent color or gradient it is
/// visible only in ColorRole::onAccent.
void drawFocusRing(QPainter &painter, const QPainterPath &outline, ColorRole role = ColorRole::accent);

/// Whether a widget that gets the focus for that reason shows the focus ring: after a key that moves the
/// focus, or when the program sets the focus and the last input was a key. After a menu closes it is as
/// before (`wasShown`). The first call starts the observation of the input.
bool showsFocusRing(Qt::FocusReason reason, bool wasShown);

} // namespace quilmora
