#include "screens/common/Symbol.h"

#include "screens/common/PixelGrid.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QRectF>
#include <QSvgRenderer>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// The drawings leave a margin of a twelfth on each side, so that this makes them as tall as the text's
/// capitals and a little more.
constexpr double extentPerTextSize = 1.3;

double strokeWidth(QFont::Weight weight)
{
    if (weight >= QFont::Bold) {
        return 2.4;
    }
    if (weight >= QFont::DemiBold) {
        return 2.2;
    }
    return weight >= QFont::Medium ? 1.95 : 1.7;
}

QByteArray drawing(const QString &name, const QColor &color, QFont::Weight weight)
{
    QFile file{u":/symbols/"_s + name + u".svg"_s};
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray svg = file.readAll();
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    const QByteArray stroke = R"(stroke-width=")" + QByteArray::number(strokeWidth(weight)) + '"';
    svg.replace(R"(stroke-width="1.7")", stroke);
    return svg;
}

QPixmap render(const QString &name, int side, const QColor &color, double ratio, QFont::Weight weight)
{
    const int pixels = static_cast<int>(std::lround(side * ratio));
    QImage image{pixels, pixels, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    QSvgRenderer renderer{drawing(name, color, weight)};
    QPainter painter{&image};
    renderer.render(&painter);
    // Applied to the finished drawing, so that overlapping strokes of a translucent colour do not show.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), QColor(0, 0, 0, color.alpha()));
    painter.end();
    image.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(image);
}

} // namespace

Symbol::Symbol(QString symbolName, int size, QFont::Weight symbolWeight)
    : name{std::move(symbolName)},
      pixelSize{size},
      weight{symbolWeight}
{
}

int Symbol::extent() const
{
    return static_cast<int>(std::lround(pixelSize * extentPerTextSize));
}

void Symbol::draw(QPainter &painter, const QRectF &bounds, const QColor &color) const
{
    const double ratio = painter.device()->devicePixelRatioF();
    const int side = extent();
    const QPointF corner = bounds.center() - QPointF(side, side) / 2;
    // On whole pixels, where the drawing stays sharp.
    painter.drawPixmap(PixelGrid{painter}.aligned(corner), pixmap(name, side, color, ratio, weight));
}

QPixmap Symbol::pixmap(const QString &name, int side, const QColor &color, double devicePixelRatio,
                       QFont::Weight weight)
{
    const QString key = u"symbol:%1:%2:%3:%4:%5"_s.arg(name)
                            .arg(side)
                            .arg(color.name(QColor::HexArgb))
                            .arg(devicePixelRatio)
                            .arg(strokeWidth(weight));
    QPixmap rendered;
    if (!QPixmapCache::find(key, &rendered)) {
        rendered = render(name, side, color, devicePixelRatio, weight);
        QPixmapCache::insert(key, rendered);
    }
    return rendered;
}

} // namespace quilmora
