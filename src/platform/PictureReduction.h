#pragma once

#include "platform/AreaReduction.h"
#include "platform/PngReader.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QImage>
#include <QSize>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace quilmora
{

/// Reads one picture file for a small place, in slices between which others may have their turn. A PNG of the
/// common kind is reduced while its rows are read; every other picture is decoded in one slice. What is a
/// picture and what is none is decided as imageCodec::decodeFile decides it.
class PictureReduction final
{
public:
    /// The picture at `path`, reduced into `box` (in pixels) if it is larger. Reads nothing yet.
    PictureReduction(const QString &path, QSize box);
    Q_DISABLE_COPY_MOVE(PictureReduction)
    ~PictureReduction() = default;

    /// Goes on reading up to `until`, and a row at least. True when there is no more to do.
    bool advance(QDeadlineTimer until);

    /// Afterwards the picture: upright and in sRGB; null when there is none. Of one that was decoded whole,
    /// the whole.
    QImage image() const { return picture; }

private:
    enum class Stage { opening, rows, end, whole, done };

    Stage open();
    Stage readRows(QDeadlineTimer until);
    Stage readEnd();
    Stage readWhole();

    const QString path;
    const QSize box;
    QFile file;
    Stage stage = Stage::opening;
    std::unique_ptr<PngReader> rows;
    std::optional<AreaReduction> reduction;
    std::vector<uchar> row;
    int rowsLeft = 0;
    QImage picture;
};

} // namespace quilmora
