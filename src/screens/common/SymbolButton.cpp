#include "screens/common/SymbolButton.h"

#include "screens/common/FocusRing.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"

#include <QPainter>

#include <utility>

namespace quilmora
{

SymbolButton::SymbolButton(Symbol shown, ColorRole role, const QString &accessibleName, QWidget *parent)
    : PaintedButton{parent},
      symbol{std::move(shown)},
      color{role}
{
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ink = themeColor(color);
    if (isDown()) {
        constexpr float pressedShare = 0.6F;
        ink.setAlphaF(ink.alphaF() * pressedShare);
    }
    symbol.draw(painter, rect(), ink);
    if (showsFocus()) {
        drawFocusRing(painter, capsule(PixelGrid{painter}.aligned(rect())));
    }
}

} // namespace quilmora
