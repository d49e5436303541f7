#include "screens/history/ThumbnailCache.h"

#include "platform/Files.h"
#include "ui/theme/Shapes.h"

#include <QImage>

namespace quilmora {
namespace {

qsizetype bytesOf(const QPixmap &pixmap)
{
    return qsizetype{pixmap.width()} * pixmap.height() * pixmap.depth() / 8;
}

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

ThumbnailCache::Thumbnail ThumbnailCache::find(const QString &path, const Square &square)
{
    const auto stamp = fileFingerprint(userFolders::expandTilde(path));
    if (!stamp) {
        m_entries.remove(path);
        return {State::absent, {}};
    }
    const auto entry = m_entries.find(path);
    if (entry == m_entries.end() || entry->stamp != *stamp) {
        return {State::unknown, {}};
    }
    entry->lastUse = ++m_uses;
    if (entry->pixmap.isNull()) {
        return {State::absent, {}};
    }
    return {entry->square == square ? State::ready : State::outdated, entry->pixmap};
}

void ThumbnailCache::keep(const QString &path, const FileFingerprint &stamp, const Square &square,
                          const QPixmap &pixmap)
{
    m_entries.insert(path, {stamp, square, pixmap, ++m_uses});
}

void ThumbnailCache::forget(const QString &path) { m_entries.remove(path); }

void ThumbnailCache::trim(const QSet<QString> &inUse)
{
    qsizetype total = bytes();
    while (total > maximumBytes) {
        auto oldest = m_entries.cend();
        for (auto entry = m_entries.cbegin(); entry != m_entries.cend(); ++entry) {
            if (!inUse.contains(entry.key()) &&
                (oldest == m_entries.cend() || entry->lastUse < oldest->lastUse)) {
                oldest = entry;
            }
        }
        if (oldest == m_entries.cend()) {
            return;
        }
        total -= bytesOf(oldest->pixmap);
        m_entries.erase(oldest);
    }
}

qsizetype ThumbnailCache::bytes() const
{
    qsizetype total = 0;
    for (const Entry &entry : m_entries) {
        total += bytesOf(entry.pixmap);
    }
    return total;
}

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
