#include "app/NavTabButton.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/IconAndTitle.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace quilmora
{
namespace
{

constexpr int pixelSize = 13;
constexpr int spacing = 6;
constexpr QSize padding{14, 8};
constexpr double cornerRadius = 7;

Symbol symbolOf(NavigationTab tab)
{
    return {tab.iconName(), pixelSize, QFont::Medium};
}

} // namespace

NavTabButton::NavTabButton(NavigationTab tab, QWidget *parent)
    : OptionButton{tab.rawValue(), parent},
      navigationTab{tab}
{
    setFont(systemFont(pixelSize, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize NavTabButton::sizeHint() const
{
    const Symbol symbol = symbolOf(navigationTab);
    return iconAndTitle::size(&symbol, navigationTab.rawValue(), font(), spacing) + 2 * padding;
}

void NavTabButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        // Left to the group of tabs: here they would also select the next tab.
        event->ignore();
        return;
    default:
        OptionButton::keyPressEvent(event);
    }
}

void NavTabButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = continuousRoundedRect(PixelGrid{painter}.aligned(rect()), cornerRadius);
    if (isChecked()) {
        painter.fillPath(outline, themeColor(ColorRole::accent));
    } else if (underMouse()) {
        painter.fillPath(outline, themeColor(ColorRole::hoverFill));
    }
    if (showsFocus()) {
        drawFocusRing(painter, outline, isChecked() ? ColorRole::onAccent : ColorRole::accent);
    }
    const Symbol symbol = symbolOf(navigationTab);
    iconAndTitle::draw(painter, rect(), &symbol, navigationTab.rawValue(), font(), spacing,
                       themeColor(isChecked() ? ColorRole::onAccent : ColorRole::primaryText));
}

} // namespace quilmora
