#include "screens/history/TileFrame.h"

#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>

namespace quilmora
{
namespace
{

template <typename Draw>
QPixmap drawn(QSize pixels, double devicePixelRatio, Draw draw)
{
    QPixmap pixmap{pixels};
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter{&pixmap};
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter, QRectF{QPointF{}, pixmap.deviceIndependentSize()});
    return pixmap;
}

} // namespace

void TileFrame::prepare(QSizeF size, double lineWidth, double devicePixelRatio)
{
    const Look wanted{(size * devicePixelRatio).toSize(), lineWidth, devicePixelRatio,
                      themeColor(ColorRole::controlBackground), themeColor(ColorRole::tileBorder)};
    if (look == wanted) {
        return;
    }
    look = wanted;
    groundPixmap = drawn(look.pixels, devicePixelRatio, [this](QPainter &painter, const QRectF &square) {
        painter.fillPath(continuousRoundedRect(square, radius), look.groundColor);
    });
    outlinePixmap = drawn(look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        // Its outer side is the edge of the picture below it.
        const QPainterPath line =
            continuousRoundedRect(insideLine(square, lineWidth), radius - lineWidth / 2);
        painter.strokePath(line, QPen{look.lineColor, lineWidth});
    });
}

} // namespace quilmora
