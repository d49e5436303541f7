#include "screens/common/GradientButton.h"

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

constexpr int pixelSize = 14;
constexpr int spacing = 6;
constexpr QSize padding{22, 11};

} // namespace

GradientButton::GradientButton(const QString &iconName, const QString &title, double opacity, QWidget *parent)
    : PaintedButton{parent},
      symbol{iconName, pixelSize, QFont::DemiBold},
      shadowOpacity{opacity}
{
    setText(title);
    setAccessibleName(title);
    setFont(systemFont(pixelSize, QFont::DemiBold));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

Shadow GradientButton::shadow() const
{
    QColor color = themeColor(ColorRole::gradientButtonShadow);
    color.setAlphaF(static_cast<float>(shadowOpacity));
    return {color, 6, {0, 3}};
}

QPainterPath GradientButton::outline() const
{
    return continuousRoundedRect(rect(), height() / 2.0);
}

QSize GradientButton::sizeHint() const
{
    return iconAndTitle::size(&symbol, text(), font(), spacing) + 2 * padding;
}

bool GradientButton::hitButton(const QPoint &position) const
{
    return outline().contains(position);
}

void GradientButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath face = capsule(PixelGrid{painter}.aligned(rect()));
    painter.fillPath(face, Theme::accentGradient(rect()));
    if (isDown()) {
        painter.fillPath(face, themeColor(ColorRole::controlPressed));
    }
    if (showsFocus()) {
        drawFocusRing(painter, face, ColorRole::onAccent);
    }
    iconAndTitle::draw(painter, rect(), &symbol, text(), font(), spacing, themeColor(ColorRole::onAccent));
}

} // namespace quilmora
