#include "screens/history/TileFrame.h"

#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>

#include <cmath>

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
    const auto insideBy = [this](const QRectF &square, double inset) {
        return continuousRoundedRect(square.adjusted(inset, inset, -inset, -inset), radius - inset);
    };
    // The line shows because its outer half lies on what is behind the tile; in whole pixels, at least one.
    const double outerHalf = std::ceil(lineWidth * devicePixelRatio / 2) / devicePixelRatio;
    groundPixmap = drawn(look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        painter.fillPath(insideBy(square, outerHalf), look.groundColor);
    });
    outlinePixmap = drawn(look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        // Filled, since its outer side is exactly the edge of the picture below it.
        QPainterPath line = insideBy(square, 0);
        line.addPath(insideBy(square, lineWidth));
        painter.fillPath(line, look.lineColor);
    });
}

} // namespace quilmora
