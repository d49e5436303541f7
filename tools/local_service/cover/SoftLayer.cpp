#include "local_service/cover/SoftLayer.h"

#include <QImage>

#include <algorithm>

namespace quilmora::localservice::softLayer {
namespace {

/// From here on one enlargement to the cover's size looks smooth.
constexpr int lastEnlargement = 4;

QImage transparentImage(QSize size)
{
    QImage image{size.expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    return image;
}

} // namespace

void put(QPainter &cover, QSize size, double softness, const std::function<void(QPainter &)> &paint,
         QPainter::CompositionMode mode)
{
    QImage image = transparentImage(size / std::max(1.0, softness));
    QPainter small{&image};
    small.setRenderHint(QPainter::Antialiasing);
    small.scale(double(image.width()) / size.width(), double(image.height()) / size.height());
    paint(small);
    small.end();
    // Interpolated from doubling to doubling, edges become smooth curves.
    while (image.width() * lastEnlargement < size.width()) {
        QImage larger = transparentImage(image.size() * 2);
        QPainter painter{&larger};
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(larger.rect(), image);
        painter.end();
        image = larger;
    }
    cover.save();
    cover.setCompositionMode(mode);
    cover.setRenderHint(QPainter::SmoothPixmapTransform);
    cover.drawImage(QRect{QPoint{}, size}, image);
    cover.restore();
}

} // namespace quilmora::localservice::softLayer
