#include "screens/common/FieldFrame.h"

#include "screens/common/FocusRing.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>

namespace quilmora
{
namespace
{

constexpr double cornerRadius = 6;

double lineWidthIn(const QPainter &painter)
{
    return PixelGrid{painter}.lineWidth(Theme::current().borderWidth(1));
}

} // namespace

void drawFieldFrame(QPainter &painter, const QRect &bounds, bool focused)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double lineWidth = lineWidthIn(painter);
    const QPainterPath outline =
        continuousRoundedRect(insideLine(PixelGrid{painter}.aligned(bounds), lineWidth), cornerRadius);
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
    const double radius = cornerRadius + lineWidthIn(painter) / 2;
    drawFocusRing(painter, continuousRoundedRect(PixelGrid{painter}.aligned(bounds), radius), role);
    painter.restore();
}

} // namespace quilmora
