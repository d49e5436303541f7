#pragma once

#include "platform/FileStamp.h"

#include <QHash>
#include <QPixmap>
#include <QSet>
#include <QString>

namespace quilmora
{

/// The pictures of covers, made ready for the squares of tiles and kept as long as their files stay as they
/// are. Bounded in memory. Made to outlive the screen, so that its next visit finds them. Main thread only.
class ThumbnailCache final
{
public:
    /// A square into which a picture is fitted, and whose corners it must leave free.
    struct Square {
        int side; ///< In device-independent pixels.
        double cornerRadius;
        double devicePixelRatio;

        bool operator==(const Square &) const = default;
    };

    enum class State {
        absent,   ///< There is no picture to show.
        unknown,  ///< To be loaded.
        outdated, ///< To be loaded for the present square; the pixmap shows the same picture for another one.
        ready,
    };

    struct Thumbnail {
        State state;
        QPixmap pixmap;
    };

    /// What there is for the picture file at `path`, as its file stands now. Never decodes.
    Thumbnail find(const QString &path, const Square &square);

    /// Keeps what was made of the file at `path`, which had that stamp, for that square: null when the file
    /// holds no picture.
    void keep(const QString &path, const FileStamp &stamp, const Square &square, const QPixmap &pixmap);

    /// Drops what is kept for `path`.
    void forget(const QString &path);

    /// Drops what was not asked for the longest time until the rest is within the bound. What lies at `inUse`
    /// stays in any case.
    void trim(const QSet<QString> &inUse);

    /// Bytes of all pixmaps kept.
    qsizetype bytes() const;

    /// The bound, in bytes: some hundred covers at two pixels for each device-independent one, which is
    /// several screens.
    static constexpr qsizetype maximumBytes = qsizetype{64} * 1024 * 1024;

private:
    struct Entry {
        FileStamp stamp;
        Square square;
        QPixmap pixmap; ///< Null when the file holds no picture.
        quint64 lastUse;
    };

    QHash<QString, Entry> entries;
    quint64 uses = 0;
};

} // namespace quilmora
