#include "screens/common/ActionButton.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/IconAndTitle.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>

namespace quilmora
{
namespace
{

constexpr double cornerRadius = 6;

} // namespace

ActionButton::ActionButton(const QString &icon, const QString &title, const Look &theLook, QWidget *parent)
    : PaintedButton{parent},
      look{theLook},
      iconName{icon},
      symbol{icon, theLook.pixelSize, theLook.weight}
{
    setText(title);
    setAccessibleName(title);
    setFont(systemFont(look.pixelSize, look.weight));
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ActionButton::faceSize() const
{
    return iconAndTitle::size(iconName.isEmpty() ? nullptr : &symbol, text(), font(), look.spacing);
}

QSize ActionButton::sizeHint() const
{
    return faceSize() + 2 * look.padding;
}

QColor ActionButton::faceColor() const
{
    if (!isEnabled()) {
        return themeColor(ColorRole::tertiaryText);
    }
    switch (look.kind) {
    case Kind::prominent:
        return themeColor(ColorRole::onAccent);
    case Kind::plainRed:
        return themeColor(ColorRole::redText);
    case Kind::bordered:
        break;
    }
    return themeColor(ColorRole::primaryText);
}

void ActionButton::paintBackground(QPainter &painter) const
{
    const PixelGrid grid{painter};
    const double lineWidth =
        look.kind == Kind::bordered ? grid.lineWidth(Theme::current().borderWidth(1)) : 0;
    const QRectF whole = grid.aligned(rect());
    const QPainterPath outline = continuousRoundedRect(insideLine(whole, lineWidth), cornerRadius);
    if (look.kind == Kind::prominent) {
        painter.fillPath(outline, themeColor(ColorRole::accent));
    } else if (look.kind == Kind::bordered) {
        painter.fillPath(outline, themeColor(ColorRole::buttonBackground));
        painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), lineWidth});
    }
    if (isDown()) {
        painter.fillPath(outline, themeColor(ColorRole::controlPressed));
    } else if (look.kind == Kind::bordered && underMouse()) {
        painter.fillPath(outline, themeColor(ColorRole::hoverFill));
    }
    if (showsFocus()) {
        drawFocusRing(painter, continuousRoundedRect(whole, cornerRadius + lineWidth / 2),
                      look.kind == Kind::prominent ? ColorRole::onAccent : ColorRole::accent);
    }
}

void ActionButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    iconAndTitle::draw(painter, rect(), iconName.isEmpty() ? nullptr : &symbol, text(), font(), look.spacing,
                       faceColor());
}

} // namespace quilmora
