#pragma once

#include "imaging/BoxScaler.h"
#include "imaging/ImageCodec.h"
#include "imaging/PngReader.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QImage>
#include <QSize>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace quilmora {

/// Reads one picture file for a small place, in slices between which others may have their turn. A PNG of the
/// common kind is reduced while its rows are read; every other picture is decoded in one slice. What is a
/// picture and what is none is decided as imageCodec::decodeFile decides it.
class IncrementalDecoder final
{
public:
    /// The picture at `path`, reduced into `box` (in pixels) if it is larger. Reads nothing yet.
    IncrementalDecoder(const QString &path, QSize box, const imageCodec::Limits &limits = {});
    Q_DISABLE_COPY_MOVE(IncrementalDecoder)
    ~IncrementalDecoder() = default;

    /// Goes on reading up to `until`, and a row at least. True when there is no more to do.
    bool advance(QDeadlineTimer until);

    /// Afterwards the picture: upright and in sRGB; null when there is none. Of one that was decoded whole,
    /// the whole.
    QImage image() const { return m_picture; }

private:
    enum class Stage { opening, rows, end, whole, done };

    bool isModest(QSize size) const;
    Stage open();
    Stage readRows(QDeadlineTimer until);
    Stage readEnd();
    Stage readWhole();

    const QString m_path;
    const QSize m_box;
    const imageCodec::Limits m_limits;
    QFile m_file;
    Stage m_stage = Stage::opening;
    std::unique_ptr<PngReader> m_rows;
    std::optional<BoxScaler> m_scaler;
    std::vector<uchar> m_row;
    int m_rowsLeft = 0;
    QImage m_picture;
};

} // namespace quilmora
