#include "ui/widgets/ActionButton.h"

#include "ui/style/ButtonFace.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/IconAndTitle.h"

#include <QPainter>

namespace quilmora {
namespace {

constexpr double wholeHeight = 1000; ///< A radius that is limited to half the height.

} // namespace

ActionButton::ActionButton(const QString &iconName, const QString &title, const Look &look, QWidget *parent)
    : PaintedButton{title, parent},
      m_look{look}
{
    if (!iconName.isEmpty()) {
        m_symbol.emplace(iconName, look.pixelSize, look.weight);
    }
    setText(title);
    setFont(systemFont(look.pixelSize, look.weight));
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ActionButton::sizeHint() const
{
    return iconAndTitle::size(symbol(), text(), font(), m_look.spacing) + 2 * m_look.padding;
}

QColor ActionButton::textColor() const
{
    if (!isEnabled()) {
        return themeColor(ColorRole::tertiaryText);
    }
    switch (m_look.kind) {
    case Kind::prominent:
    case Kind::gradient:
        return themeColor(ColorRole::onAccent);
    case Kind::plain:
        return themeColor(ColorRole::redText);
    case Kind::bordered:
        break;
    }
    return themeColor(ColorRole::primaryText);
}

void ActionButton::paint(QPainter &painter)
{
    ButtonFace{.kind = m_look.kind,
               .cornerRadius = m_look.cornerRadius,
               .isPressed = isDown(),
               .isHovered = m_look.kind == Kind::bordered && underMouse(),
               .isFocused = showsFocus()}
        .draw(painter, rect());
    iconAndTitle::draw(painter, rect(), symbol(), text(), font(), m_look.spacing, textColor());
}

GradientButton::GradientButton(const QString &iconName, const QString &title, double shadowOpacity,
                               QWidget *parent)
    : ActionButton{iconName,
                   title,
                   {Kind::gradient, 14, QFont::DemiBold, measures::iconSpacing, {22, 11}, wholeHeight},
                   parent},
      m_shadowOpacity{shadowOpacity}
{
}

Shadow GradientButton::shadow() const
{
    QColor color = themeColor(ColorRole::gradientButtonShadow);
    color.setAlphaF(static_cast<float>(m_shadowOpacity));
    return {color, 6, {0, 3}};
}

} // namespace quilmora
