#pragma once

class QPainter;
class QRect;

namespace quilmora
{

/// Draws what text fields and editors stand on: the text background with a thin rounded border along
/// `bounds`, and the mark of the focus where `focused`.
void drawFieldFrame(QPainter &painter, const QRect &bounds, bool focused);

} // namespace quilmora
