#pragma once

#include "imaging/IncrementalDecoder.h"
#include "model/PictureLimits.h"
#include "screens/history/ThumbnailCache.h"

#include <QDeadlineTimer>

#include <memory>
#include <utility>

namespace quilmora {

/// Reads pictures into a cache, one at a time and in short steps.
class ThumbnailReader final
{
public:
    /// `cache` must outlive the reader.
    explicit ThumbnailReader(ThumbnailCache &cache) : m_cache{cache} {}

    /// Reads on until `until`. Restarts when an argument or the file has changed. True once the cache has the
    /// picture.
    bool advance(const QString &path, const ThumbnailCache::Square &square, QDeadlineTimer until);

    /// The picture that is partly read, or empty.
    QString currentPath() const { return m_current ? m_current->path : QString{}; }

    void drop() { m_current.reset(); }

private:
    struct Current {
        Current(QString imagePath, const ThumbnailCache::Square &imageSquare,
                const FileFingerprint &fileStamp, const QString &file, QSize box)
            : path{std::move(imagePath)},
              square{imageSquare},
              stamp{fileStamp},
              picture{file, box, pictureLimits::file}
        {
        }

        QString path;
        ThumbnailCache::Square square;
        FileFingerprint stamp;
        IncrementalDecoder picture;
    };

    ThumbnailCache &m_cache;
    std::unique_ptr<Current> m_current;
};

} // namespace quilmora
