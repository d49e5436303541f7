#pragma once

#include "screens/common/Theme.h"

class QPainter;
class QPainterPath;

namespace quilmora
{

/// Draws the mark of the keyboard focus along `outline`, inside it: the outer edge of what has the focus, its
/// border included, which the mark covers. It is sharp where `outline` is on whole pixels. On a face of the
/// accent colour or gradient it has to be drawn in ColorRole::onAccent to be seen.
void drawFocusRing(QPainter &painter, const QPainterPath &outline, ColorRole role = ColorRole::accent);

} // namespace quilmora
