#include "screens/history/ThumbnailReader.h"

#include "platform/UserFolders.h"
#include "screens/common/Shapes.h"

#include <QImage>
#include <QPainter>

namespace quilmora
{
namespace
{

QSize pixelsOf(const ThumbnailCache::Square &square)
{
    const double pixels = square.side * square.devicePixelRatio;
    return QSizeF{pixels, pixels}.toSize();
}

/// `image` as large as fits into the square; where it reaches the square's corners they are cut. Not by a
/// clip when painting: clips have jagged edges.
QPixmap fitted(const QImage &image, const ThumbnailCache::Square &square)
{
    const QSize box = pixelsOf(square);
    const QSize size = image.size().scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
    const QImage scaled = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);

    QPixmap pixmap{size};
    pixmap.fill(Qt::transparent);
    QPainter painter{&pixmap};
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF outline{QPointF{}, QSizeF{box}};
    outline.moveCenter(QRectF{QPointF{}, QSizeF{size}}.center());
    painter.fillPath(continuousRoundedRect(outline, square.cornerRadius * square.devicePixelRatio),
                     QBrush{scaled});
    painter.end();
    pixmap.setDevicePixelRatio(square.devicePixelRatio);
    return pixmap;
}

} // namespace

bool ThumbnailReader::advance(const QString &path, const ThumbnailCache::Square &square, QDeadlineTimer until)
{
    const QString file = userFolders::expandTilde(path);
    // Taken first: a file that changes while it is read gets another one.
    const auto stamp = fileStamp(file);
    if (!stamp) {
        drop();
        pictures.forget(path);
        return true;
    }
    if (!begun || begun->path != path || begun->square != square || begun->stamp != *stamp) {
        begun = std::make_unique<Begun>(path, square, *stamp, file, pixelsOf(square));
    }
    if (!begun->picture.advance(until)) {
        return false;
    }
    const QImage image = begun->picture.image();
    pictures.keep(path, *stamp, square, image.isNull() ? QPixmap{} : fitted(image, square));
    drop();
    return true;
}

} // namespace quilmora
