#include "screens/common/FocusRing.h"

#include "screens/common/PixelGrid.h"

#include <QPainter>
#include <QPainterPath>

namespace quilmora
{

void drawFocusRing(QPainter &painter, const QPainterPath &outline, ColorRole role)
{
    constexpr double usualWidth = 2.0;
    const double width = PixelGrid{painter}.lineWidth(usualWidth);
    QColor color = themeColor(role);
    color.setAlphaF(role == ColorRole::accent ? 0.9F : 0.8F);
    painter.save();
    painter.setClipPath(outline);
    // Half of the line is cut off by the clip.
    painter.strokePath(outline, QPen{color, 2 * width});
    painter.restore();
}

} // namespace quilmora
