#include "ui/widgets/GradientButton.h"

#include "ui/style/ButtonFace.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/IconAndTitle.h"

#include <QPainter>

namespace quilmora {
namespace {

constexpr int pixelSize = 14;
constexpr QSize padding{22, 11};

} // namespace

GradientButton::GradientButton(const QString &iconName, const QString &title, double shadowOpacity,
                               QWidget *parent)
    : PaintedButton{title, parent},
      m_symbol{iconName, pixelSize, QFont::DemiBold},
      m_shadowOpacity{shadowOpacity}
{
    setText(title);
    setFont(systemFont(pixelSize, QFont::DemiBold));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

Shadow GradientButton::shadow() const
{
    QColor color = themeColor(ColorRole::gradientButtonShadow);
    color.setAlphaF(static_cast<float>(m_shadowOpacity));
    return {color, 6, {0, 3}};
}

QPainterPath GradientButton::outline() const
{
    return continuousRoundedRect(rect(), height() / 2.0);
}

QSize GradientButton::sizeHint() const
{
    return iconAndTitle::size(&m_symbol, text(), font(), measures::iconSpacing) + 2 * padding;
}

bool GradientButton::hitButton(const QPoint &position) const
{
    return outline().contains(position);
}

void GradientButton::paint(QPainter &painter)
{
    ButtonFace{.kind = ButtonFace::Kind::gradient,
               .cornerRadius = height() * 1.0,
               .isPressed = isDown(),
               .isFocused = showsFocus()}
        .draw(painter, rect());
    iconAndTitle::draw(painter, rect(), &m_symbol, text(), font(), measures::iconSpacing,
                       themeColor(ColorRole::onAccent));
}

} // namespace quilmora
