#include "screens/history/ThumbnailReader.h"

#include "platform/UserFolders.h"
#include "ui/theme/Shapes.h"

#include <QImage>

namespace quilmora {
namespace {

QSize pixelsOf(const ThumbnailCache::Square &square)
{
    const double pixels = square.side * square.devicePixelRatio;
    return QSizeF{pixels, pixels}.toSize();
}

/// As large as fits into the square, without the corners of the square.
QPixmap fitted(const QImage &image, const ThumbnailCache::Square &square)
{
    const QSize box = pixelsOf(square);
    const QSize size = image.size().scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
    QRectF outline{QPointF{}, QSizeF{box}};
    outline.moveCenter(QRectF{QPointF{}, QSizeF{size}}.center());
    return cutPixmap(image, size,
                     continuousRoundedRect(outline, square.cornerRadius * square.devicePixelRatio),
                     square.devicePixelRatio);
}

} // namespace

bool ThumbnailReader::advance(const QString &path, const ThumbnailCache::Square &square, QDeadlineTimer until)
{
    const QString file = userFolders::expandTilde(path);
    // Before reading, so that a change meanwhile is noticed.
    const auto stamp = fileFingerprint(file);
    if (!stamp) {
        drop();
        m_cache.forget(path);
        return true;
    }
    if (!m_current || m_current->path != path || m_current->square != square || m_current->stamp != *stamp) {
        m_current = std::make_unique<Current>(path, square, *stamp, file, pixelsOf(square));
    }
    if (!m_current->picture.advance(until)) {
        return false;
    }
    const QImage image = m_current->picture.image();
    m_cache.keep(path, *stamp, square, image.isNull() ? QPixmap{} : fitted(image, square));
    drop();
    return true;
}

} // namespace quilmora
