#include "ui/style/ButtonFace.h"

#include "ui/style/FocusRing.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"

#include <QPainter>

namespace quilmora {

void ButtonFace::draw(QPainter &painter, const QRect &bounds) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelSnapper grid{painter};
    const double lineWidth = kind == Kind::bordered ? grid.borderWidth() : 0;
    const QRectF whole = grid.aligned(bounds);
    const QPainterPath outline = continuousRoundedRect(insideLine(whole, lineWidth), cornerRadius);
    switch (kind) {
    case Kind::bordered:
        painter.fillPath(outline, themeColor(ColorRole::buttonBackground));
        painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), lineWidth});
        break;
    case Kind::prominent:
        painter.fillPath(outline, themeColor(ColorRole::accent));
        break;
    case Kind::gradient:
        painter.fillPath(outline, Theme::accentGradient(bounds));
        break;
    case Kind::plain:
        break;
    }
    if (isPressed) {
        painter.fillPath(outline, themeColor(ColorRole::controlPressed));
    } else if (isHovered) {
        painter.fillPath(outline, themeColor(ColorRole::hoverFill));
    }
    if (isFocused) {
        const bool isOnAccent = kind == Kind::prominent || kind == Kind::gradient;
        drawFocusRing(painter, continuousRoundedRect(whole, cornerRadius + lineWidth / 2),
                      isOnAccent ? ColorRole::onAccent : ColorRole::accent);
    }
    painter.restore();
}

} // namespace quilmora
