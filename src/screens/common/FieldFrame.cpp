#include "screens/common/FieldFrame.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>

namespace quilmora
{

void drawFieldFrame(QPainter &painter, const QRect &bounds, bool focused)
{
    constexpr double cornerRadius = 6;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = continuousRoundedRect(insideLine(bounds, 1), cornerRadius);
    painter.fillPath(outline, themeColor(ColorRole::textBackground));
    painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), 1});
    if (focused) {
        drawFocusRing(painter, outline);
    }
    painter.restore();
}

} // namespace quilmora
