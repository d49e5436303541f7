#include "screens/common/Card.h"

#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>

namespace quilmora
{

void Card::paintEvent(QPaintEvent * /*event*/)
{
    constexpr double cornerRadius = 12;
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(roundedRect(PixelGrid{painter}.aligned(rect()), cornerRadius),
                     themeColor(ColorRole::controlBackground));
}

} // namespace quilmora
