#include "ui/style/FieldFrame.h"

#include "ui/style/FocusRing.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"

#include <QPainter>

namespace quilmora {

void drawFieldFrame(QPainter &painter, const QRect &bounds, bool focused)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelSnapper grid{painter};
    const double lineWidth = grid.borderWidth();
    const QPainterPath outline =
        continuousRoundedRect(insideLine(grid.aligned(bounds), lineWidth), measures::controlRadius);
    painter.fillPath(outline, themeColor(ColorRole::textBackground));
    painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), lineWidth});
    painter.restore();
    if (focused) {
        drawFieldRing(painter, bounds, ColorRole::accent);
    }
}

void drawFieldRing(QPainter &painter, const QRect &bounds, ColorRole role)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelSnapper grid{painter};
    const double radius = measures::controlRadius + grid.borderWidth() / 2;
    drawFocusRing(painter, continuousRoundedRect(grid.aligned(bounds), radius), role);
    painter.restore();
}

} // namespace quilmora
