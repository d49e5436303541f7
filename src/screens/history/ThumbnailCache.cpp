#include "screens/history/ThumbnailCache.h"

#include "platform/UserFolders.h"

namespace quilmora {
namespace {

qsizetype bytesOf(const QPixmap &pixmap)
{
    return qsizetype{pixmap.width()} * pixmap.height() * pixmap.depth() / 8;
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

void ThumbnailCache::forget(const QString &path)
{
    m_entries.remove(path);
}

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

} // namespace quilmora
