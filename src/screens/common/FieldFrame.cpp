#include "screens/common/FieldFrame.h"

#include "screens/common/FocusRing.h"
#include "screens/common/PixelGrid.h"
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
    const PixelGrid grid{painter};
    const double lineWidth = grid.lineWidth(1);
    const QPainterPath outline =
        continuousRoundedRect(insideLine(grid.aligned(bounds), lineWidth), cornerRadius);
    painter.fillPath(outline, themeColor(ColorRole::textBackground));
    painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), lineWidth});
    if (focused) {
        drawFocusRing(painter, outline);
    }
    painter.restore();
}

} // namespace quilmora
