#pragma once

#include <QtGlobal>

#include <vector>

namespace quilmora {

/// Filters the rows of a PNG file, each with the one of the format's five filter types whose residues, taken
/// as signed bytes, have the smallest sum of magnitudes. Every row is filtered with all five to find it. Rows
/// are given from the top of the picture down.
class PngFilter final
{
    Q_DISABLE_COPY_MOVE(PngFilter)

public:
    /// For rows of `rowBytes` bytes (at least 1), in which a pixel takes `pixelBytes` (1 to 8).
    PngFilter(qsizetype rowBytes, qsizetype pixelBytes);
    ~PngFilter() = default;

    /// Where the next row is to be written; it has room for exactly one. Valid until the row is filtered.
    uchar *row() { return m_current.data() + margin; }

    /// Filters that row: writes the number of the filter type chosen and the residues, `rowBytes` + 1 bytes
    /// in all. Gives the sum of the residues' magnitudes.
    quint64 filterTo(uchar *out);

private:
    /// Room before a row, always zero: what lies to the left of the first pixel.
    static constexpr qsizetype margin = 8;

    const qsizetype m_rowBytes;
    const qsizetype m_pixelBytes;
    std::vector<uchar> m_current;
    std::vector<uchar> m_above; ///< Zero above the first row.
    std::vector<uchar> m_best;
    std::vector<uchar> m_trial;
};

} // namespace quilmora
