#include "screens/history/ThumbnailCache.h"

#include "platform/ImageCodec.h"
#include "platform/UserFolders.h"
#include "screens/common/Shapes.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace quilmora
{
namespace
{

/// `image` as large as fits into the square; where it reaches the square's corners they are cut. Not by a
/// clip when painting: clips have jagged edges.
QPixmap fitted(const QImage &image, const ThumbnailCache::Square &square)
{
    const double pixels = square.side * square.devicePixelRatio;
    const QSize box = QSizeF{pixels, pixels}.toSize();
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

qsizetype bytesOf(const QPixmap &pixmap)
{
    return qsizetype{pixmap.width()} * pixmap.height() * pixmap.depth() / 8;
}

} // namespace

ThumbnailCache::Thumbnail ThumbnailCache::find(const QString &path, const Square &square)
{
    const auto stamp = fileStamp(userFolders::expandTilde(path));
    if (!stamp) {
        entries.remove(path);
        return {State::absent, {}};
    }
    const auto entry = entries.find(path);
    if (entry == entries.end() || entry->stamp != *stamp) {
        return {State::unknown, {}};
    }
    entry->lastUse = ++uses;
    if (entry->pixmap.isNull()) {
        return {State::absent, {}};
    }
    return {entry->square == square ? State::ready : State::outdated, entry->pixmap};
}

void ThumbnailCache::load(const QString &path, const Square &square)
{
    const QString file = userFolders::expandTilde(path);
    // Taken first: a file that changes while it is read gets another one.
    const auto stamp = fileStamp(file);
    if (!stamp) {
        entries.remove(path);
        return;
    }
    const QImage image = imageCodec::decodeFile(file);
    entries.insert(path, {*stamp, square, image.isNull() ? QPixmap{} : fitted(image, square), ++uses});
}

void ThumbnailCache::trim(const QSet<QString> &inUse)
{
    qsizetype total = bytes();
    while (total > maximumBytes) {
        auto oldest = entries.cend();
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
            if (!inUse.contains(entry.key()) &&
                (oldest == entries.cend() || entry->lastUse < oldest->lastUse)) {
                oldest = entry;
            }
        }
        if (oldest == entries.cend()) {
            return;
        }
        total -= bytesOf(oldest->pixmap);
        entries.erase(oldest);
    }
}

qsizetype ThumbnailCache::bytes() const
{
    qsizetype total = 0;
    for (const Entry &entry : entries) {
        total += bytesOf(entry.pixmap);
    }
    return total;
}

} // namespace quilmora
