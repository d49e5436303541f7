#include "screens/history/TileFrame.h"

#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QPainter>

#include <cmath>

namespace quilmora {
namespace {

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
    if (m_look == wanted) {
        return;
    }
    m_look = wanted;
    const auto insideBy = [this](const QRectF &square, double inset) {
        return continuousRoundedRect(square.adjusted(inset, inset, -inset, -inset), m_radius - inset);
    };
    // The outer half of the line is visible beside the background; in whole pixels, at least one.
    const double outerHalf = std::ceil(lineWidth * devicePixelRatio / 2) / devicePixelRatio;
    m_background = drawn(m_look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        painter.fillPath(insideBy(square, outerHalf), m_look.backgroundColor);
    });
    m_outline = drawn(m_look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        // Filled, so that its outer edge is exactly that of the picture.
        QPainterPath line = insideBy(square, 0);
        line.addPath(insideBy(square, lineWidth));
        painter.fillPath(line, m_look.lineColor);
    });
}

} // namespace quilmora
