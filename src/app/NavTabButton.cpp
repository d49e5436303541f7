#include "app/NavTabButton.h"

#include "ui/style/ButtonFace.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/IconAndTitle.h"

#include <QKeyEvent>
#include <QPainter>

namespace quilmora {
namespace {

constexpr int pixelSize = 13;
constexpr QSize padding{14, 8};
constexpr double cornerRadius = 7;

Symbol symbolOf(NavigationTab tab)
{
    return {tab.iconName(), pixelSize, QFont::Medium};
}

} // namespace

NavTabButton::NavTabButton(NavigationTab tab, QWidget *parent)
    : OptionButton{tab.rawValue(), parent},
      m_tab{tab}
{
    setFont(systemFont(pixelSize, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize NavTabButton::sizeHint() const
{
    const Symbol symbol = symbolOf(m_tab);
    return iconAndTitle::size(&symbol, m_tab.rawValue(), font(), measures::iconSpacing) + 2 * padding;
}

void NavTabButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        // For the group of tabs; QAbstractButton would also select the next tab.
        event->ignore();
        return;
    default:
        OptionButton::keyPressEvent(event);
    }
}

void NavTabButton::paint(QPainter &painter)
{
    ButtonFace{.kind = isChecked() ? ButtonFace::Kind::prominent : ButtonFace::Kind::plain,
               .cornerRadius = cornerRadius,
               .isHovered = !isChecked() && underMouse(),
               .isFocused = showsFocus()}
        .draw(painter, rect());
    const Symbol symbol = symbolOf(m_tab);
    iconAndTitle::draw(painter, rect(), &symbol, m_tab.rawValue(), font(), measures::iconSpacing,
                       themeColor(isChecked() ? ColorRole::onAccent : ColorRole::primaryText));
}

} // namespace quilmora
