#include "screens/common/Symbol.h"

#include "screens/common/PixelGrid.h"
#include "screens/common/SymbolDrawing.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QRectF>

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

int pixelsOf(int side, double ratio)
{
    return static_cast<int>(std::lround(side * ratio));
}

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

QByteArray svgOf(const QString &name)
{
    QFile file{u":/symbols/"_s + name + u".svg"_s};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

QPixmap render(const QString &name, int side, const QColor &color, double ratio, QFont::Weight weight,
               bool isMoved)
{
    const int pixels = pixelsOf(side, ratio);
    QImage image{pixels, pixels, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    QPainter painter{&image};
    painter.setRenderHint(QPainter::Antialiasing);
    SymbolDrawing{svgOf(name)}.paint(painter, pixels, strokeWidth(weight), QColor{color.rgb()}, isMoved);
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
    // Its middle lies on that of the bounds, its edges on whole pixels.
    const int pixels = pixelsOf(side, ratio);
    const long twiceMiddle = std::lround(2 * painter.deviceTransform().map(bounds.center()).x());
    const bool isMoved = (twiceMiddle - pixels) % 2 != 0;
    const double half = (pixels + (isMoved ? 1 : 0)) / (2 * ratio);
    const QPointF corner = PixelGrid{painter}.aligned(bounds.center() - QPointF(half, half));
    painter.drawPixmap(corner, pixmap(name, side, color, ratio, weight, isMoved));
}

QPixmap Symbol::pixmap(const QString &name, int side, const QColor &color, double devicePixelRatio,
                       QFont::Weight weight, bool isMoved)
{
    const QString key = u"symbol:%1:%2:%3:%4:%5:%6"_s.arg(name)
                            .arg(side)
                            .arg(color.name(QColor::HexArgb))
                            .arg(devicePixelRatio)
                            .arg(strokeWidth(weight))
                            .arg(isMoved);
    QPixmap rendered;
    if (!QPixmapCache::find(key, &rendered)) {
        rendered = render(name, side, color, devicePixelRatio, weight, isMoved);
        QPixmapCache::insert(key, rendered);
    }
    return rendered;
}

} // namespace quilmora
