#include "ui/theme/Symbol.h"

#include "ui/theme/PixelSnapper.h"
#include "ui/theme/SymbolDrawing.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QRectF>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Without the margin of a twelfth in the SVG files, symbols are a little taller than capitals.
constexpr double extentPerTextSize = 1.3;

int pixelsOf(int side, double ratio) { return static_cast<int>(std::lround(side * ratio)); }

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
    const bool isKnown = file.open(QIODevice::ReadOnly);
    Q_ASSERT_X(isKnown, "Symbol", qPrintable(name));
    return isKnown ? file.readAll() : QByteArray{};
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
    // Applied to the finished drawing, so that overlapping strokes of a translucent color do not show.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), QColor(0, 0, 0, color.alpha()));
    painter.end();
    image.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(image);
}

} // namespace

Symbol::Symbol(QString symbolName, int size, QFont::Weight symbolWeight)
    : m_name{std::move(symbolName)},
      m_pixelSize{size},
      m_weight{symbolWeight}
{
}

int Symbol::extent() const { return static_cast<int>(std::lround(m_pixelSize * extentPerTextSize)); }

void Symbol::draw(QPainter &painter, const QRectF &bounds, const QColor &color) const
{
    const double ratio = painter.device()->devicePixelRatioF();
    const int side = extent();
    // Centered in the bounds, with its edges on whole pixels.
    const int pixels = pixelsOf(side, ratio);
    const long twiceMiddle = std::lround(2 * painter.deviceTransform().map(bounds.center()).x());
    const bool isMoved = (twiceMiddle - pixels) % 2 != 0;
    const double half = (pixels + (isMoved ? 1 : 0)) / (2 * ratio);
    const QPointF corner = PixelSnapper{painter}.aligned(bounds.center() - QPointF(half, half));
    painter.drawPixmap(corner, pixmap(m_name, side, color, ratio, m_weight, isMoved));
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
