#include "screens/common/WindowGround.h"

#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QGuiApplication>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quilmora::windowGround
{

bool needsMask()
{
    return QGuiApplication::platformName() == u"xcb"_s;
}

QBitmap mask(const QRect &bounds, double cornerRadius)
{
    QBitmap shape{bounds.size()};
    shape.clear();
    QPainter painter{&shape};
    painter.fillPath(roundedRect(bounds, cornerRadius), Qt::color1);
    return shape;
}

void draw(QPainter &painter, const QRect &bounds, double cornerRadius, const QColor &color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelGrid grid{painter};
    const QRectF whole = grid.aligned(bounds);
    if (needsMask()) {
        // Softened corners would let a line of the window's background through.
        painter.fillRect(whole, color);
    } else {
        painter.fillPath(roundedRect(whole, cornerRadius), color);
    }
    const double lineWidth = grid.lineWidth(1);
    painter.strokePath(roundedRect(insideLine(whole, lineWidth), cornerRadius - lineWidth / 2),
                       QPen{themeColor(ColorRole::controlBorder), lineWidth});
    painter.restore();
}

} // namespace quilmora::windowGround
