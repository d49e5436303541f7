#include "screens/common/ScaledPicture.h"

#include "screens/common/Shapes.h"

#include <QPainter>

namespace quilmora
{
namespace
{

/// `image` as a pixmap with its corners cut. Not by a clip when painting: clips have jagged edges.
QPixmap rounded(const QImage &image, double radius)
{
    QPixmap pixmap{image.size()};
    pixmap.fill(Qt::transparent);
    QPainter painter{&pixmap};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(roundedRect(image.rect(), radius), QBrush{image});
    return pixmap;
}

} // namespace

void ScaledPicture::setImage(const QImage &newImage)
{
    image = newImage;
    scaled = {};
}

QSize ScaledPicture::fittedSize(QSize box) const
{
    return image.isNull() ? QSize{} : image.size().scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

const QPixmap &ScaledPicture::pixmap(QSize size, double devicePixelRatio)
{
    const QSize pixels = (QSizeF{size} * devicePixelRatio).toSize();
    if (!image.isNull() && (scaled.size() != pixels || scaled.devicePixelRatio() != devicePixelRatio)) {
        scaled = rounded(image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
                         radius * devicePixelRatio);
        scaled.setDevicePixelRatio(devicePixelRatio);
    }
    return scaled;
}

} // namespace quilmora
