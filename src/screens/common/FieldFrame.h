#pragma once

#include "screens/common/Theme.h"

class QPainter;
class QRect;

namespace quilmora
{

/// Draws what text fields and editors stand on: the text background with a thin rounded border along
/// `bounds`, and the focus ring where `focused`.
void drawFieldFrame(QPainter &painter, const QRect &bounds, bool focused);

/// Draws a ring of that colour along the inside of the border of a field, as the focus ring is.
void drawFieldRing(QPainter &painter, const QRect &bounds, ColorRole role);

} // namespace quilmora
