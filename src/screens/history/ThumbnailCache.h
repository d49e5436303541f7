#pragma once

#include "imaging/IncrementalDecoder.h"
#include "model/PictureLimits.h"
#include "platform/Files.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QPixmap>
#include <QSet>
#include <QString>

#include <memory>
#include <utility>

namespace quilmora {

/// The scaled pictures of covers, until their files change. Bounded in memory. Outlives the history screen.
/// Main thread only.
class ThumbnailCache final
{
public:
    /// The square with round corners into which a picture is fitted.
    struct Square {
        int side; ///< In device-independent pixels.
        double cornerRadius;
        double devicePixelRatio;

        bool operator==(const Square &) const = default;
    };

    enum class State {
        absent,   ///< There is no picture.
        unknown,  ///< To be loaded.
        outdated, ///< To be loaded; the pixmap is for another square.
        ready,
    };

    struct Thumbnail {
        State state;
        QPixmap pixmap;
    };

    /// Looks at the file, but does not decode it.
    Thumbnail find(const QString &path, const Square &square);

    /// `stamp` is that of the file when it was read; a null pixmap means that it is no picture.
    void keep(const QString &path, const FileFingerprint &stamp, const Square &square, const QPixmap &pixmap);

    void forget(const QString &path);

    /// Drops the least recently used pictures above the bound, except those in `inUse`.
    void trim(const QSet<QString> &inUse);

    /// Of all pixmaps.
    qsizetype bytes() const;

    /// Some hundred covers, several screens, at a device pixel ratio of 2.
    static constexpr qsizetype maximumBytes = qsizetype{64} * 1024 * 1024;

private:
    struct Entry {
        FileFingerprint stamp;
        Square square;
        QPixmap pixmap; ///< Null when the file is no picture.
        quint64 lastUse;
    };

    QHash<QString, Entry> m_entries;
    quint64 m_uses = 0;
};

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
