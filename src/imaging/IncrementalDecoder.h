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

/// Reads one picture file for a thumbnail, in slices. A PNG that PngReader reads is reduced row by row; every
/// other picture is decoded in one slice. Accepts the pictures that imageCodec::decodeFile does.
class IncrementalDecoder final
{
public:
    /// The picture at `path`, reduced into `box` (in pixels) if it is larger. Reads nothing yet.
    IncrementalDecoder(const QString &path, QSize box, const imageCodec::Limits &limits = {});

    /// Reads on until `until`, at least one row. True when it is done.
    bool advance(QDeadlineTimer until);

    /// When done, the picture: upright, in sRGB, not reduced if it was decoded in one slice; null if there is
    /// none.
    QImage image() const { return m_picture; }

private:
    enum class Stage { opening, rows, end, whole, done };

    bool isModest(QSize size) const;
    Stage open();
    Stage readRows(QDeadlineTimer until);
    Stage readEnd();

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
