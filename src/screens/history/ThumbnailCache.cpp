#include "screens/history/ThumbnailCache.h"

#include "platform/UserFolders.h"

namespace quilmora
{
namespace
{

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

void ThumbnailCache::keep(const QString &path, const FileStamp &stamp, const Square &square,
                          const QPixmap &pixmap)
{
    entries.insert(path, {stamp, square, pixmap, ++uses});
}

void ThumbnailCache::forget(const QString &path)
{
    entries.remove(path);
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
