#include "ui/theme/Shadow.h"

#include <QHashFunctions>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// One pass of a box blur over a line of 8-bit values at a distance of `step` bytes.
void blurLine(uchar *values, qsizetype count, qsizetype step, qsizetype radius, std::vector<uchar> &line)
{
    for (qsizetype i = 0; i < count; ++i) {
        line[static_cast<std::size_t>(i)] = values[i * step];
    }
    const auto at = [&](qsizetype i) -> int {
        return i < 0 || i >= count ? 0 : line[static_cast<std::size_t>(i)];
    };
    int sum = 0;
    for (qsizetype i = -radius; i <= radius; ++i) {
        sum += at(i);
    }
    const int width = static_cast<int>(2 * radius + 1);
    for (qsizetype i = 0; i < count; ++i) {
        values[i * step] = static_cast<uchar>((sum + width / 2) / width);
        sum += at(i + radius + 1) - at(i - radius);
    }
}

/// The radii of three box blurs that approximate a Gaussian blur. A box of n values has a variance of
/// (n * n - 1) / 12; some radii are larger by one for a better approximation.
std::array<qsizetype, 3> radiiFor(double sigma)
{
    const double twelveVariances = 12 * sigma * sigma;
    const auto radius = static_cast<qsizetype>((std::sqrt(twelveVariances / 3 + 1) - 1) / 2);
    const double width = 2.0 * static_cast<double>(radius) + 1;
    const auto wider = std::lround((twelveVariances - 3 * (width * width - 1)) / (4 * width + 4));
    return {radius + (wider > 2 ? 1 : 0), radius + (wider > 1 ? 1 : 0), radius + (wider > 0 ? 1 : 0)};
}

void blur(QImage &mask, double sigma)
{
    std::vector<uchar> line(static_cast<std::size_t>(std::max(mask.width(), mask.height())));
    uchar *bits = mask.bits();
    const qsizetype stride = mask.bytesPerLine();
    for (const qsizetype radius : radiiFor(sigma)) {
        for (qsizetype y = 0; y < mask.height(); ++y) {
            blurLine(bits + y * stride, mask.width(), 1, radius, line);
        }
        for (qsizetype x = 0; x < mask.width(); ++x) {
            blurLine(bits + x, mask.height(), stride, radius, line);
        }
    }
}

QPixmap blurredShape(const Shadow &shadow, const QPainterPath &shape, double ratio)
{
    const QRectF bounds = shape.boundingRect();
    const int reach = shadow.reach();
    const QSizeF size = (bounds.size() + QSizeF(2.0 * reach, 2.0 * reach)) * ratio;
    QImage mask{size.toSize(), QImage::Format_Alpha8};
    mask.fill(0);
    QPainter painter{&mask};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(ratio, ratio);
    painter.translate(QPointF(reach, reach) - bounds.topLeft());
    painter.fillPath(shape, Qt::black);
    painter.end();
    blur(mask, shadow.blurRadius / 2 * ratio);

    QImage tinted{mask.size(), QImage::Format_ARGB32_Premultiplied};
    tinted.fill(shadow.color);
    QPainter tint{&tinted};
    tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tint.drawImage(0, 0, mask);
    tint.end();
    tinted.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(tinted);
}

/// Independent of the position of the shape.
size_t shapeHash(const QPainterPath &shape)
{
    constexpr double stepsPerUnit = 64;
    const QPointF corner = shape.boundingRect().topLeft();
    size_t hash = 0;
    for (int i = 0; i < shape.elementCount(); ++i) {
        const QPainterPath::Element element = shape.elementAt(i);
        hash =
            qHashMulti(hash, static_cast<int>(element.type), qRound((element.x - corner.x()) * stepsPerUnit),
                       qRound((element.y - corner.y()) * stepsPerUnit));
    }
    return hash;
}

} // namespace

int Shadow::reach() const { return static_cast<int>(std::ceil(blurRadius * 1.6)); }

double Shadow::resolution(double devicePixelRatio) const
{
    // Very soft shadows are large, and look the same at a low resolution.
    constexpr double softBlur = 20;
    return blurRadius < softBlur ? devicePixelRatio : 0.5;
}

void Shadow::draw(QPainter &painter, const QPainterPath &shape) const
{
    const double deviceRatio = painter.device()->devicePixelRatioF();
    const double ratio = resolution(deviceRatio);
    const QRectF bounds = shape.boundingRect();
    const QString key = u"shadow:%1:%2:%3x%4:%5:%6"_s.arg(color.name(QColor::HexArgb))
                            .arg(blurRadius)
                            .arg(bounds.width())
                            .arg(bounds.height())
                            .arg(shapeHash(shape), 0, 16)
                            .arg(ratio);
    QPixmap blurred;
    if (!QPixmapCache::find(key, &blurred)) {
        blurred = blurredShape(*this, shape, ratio);
        QPixmapCache::insert(key, blurred);
    }
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, ratio != deviceRatio);
    const QPointF corner = bounds.topLeft() - QPointF(reach(), reach()) + offset;
    painter.drawPixmap(QRectF{corner, blurred.deviceIndependentSize()}, blurred, blurred.rect());
    painter.restore();
}

} // namespace quilmora
