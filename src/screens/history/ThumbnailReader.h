#pragma once

#include "platform/PictureReduction.h"
#include "screens/history/ThumbnailCache.h"

#include <QDeadlineTimer>

#include <memory>
#include <utility>

namespace quilmora
{

/// Reads pictures into a cache, one at a time and in slices between which events have their turn.
class ThumbnailReader final
{
public:
    /// `cache` must outlive the reader.
    explicit ThumbnailReader(ThumbnailCache &cache) : pictures{cache} {}
    Q_DISABLE_COPY_MOVE(ThumbnailReader)
    ~ThumbnailReader() = default;

    /// Goes on up to `until` with the picture at `path` for that square. Begins it anew when the file has
    /// changed meanwhile; what was begun of another picture is dropped. True once the cache knows it.
    bool advance(const QString &path, const ThumbnailCache::Square &square, QDeadlineTimer until);

    /// The picture that was begun; empty when there is none.
    QString begunPath() const { return begun ? begun->path : QString{}; }

    /// Drops the picture that was begun.
    void drop() { begun.reset(); }

private:
    struct Begun {
        Begun(QString shown, const ThumbnailCache::Square &place, const FileStamp &state, const QString &file,
              QSize box)
            : path{std::move(shown)},
              square{place},
              stamp{state},
              picture{file, box}
        {
        }

        QString path;
        ThumbnailCache::Square square;
        FileStamp stamp;
        PictureReduction picture;
    };

    ThumbnailCache &pictures;
    std::unique_ptr<Begun> begun;
};

} // namespace quilmora
