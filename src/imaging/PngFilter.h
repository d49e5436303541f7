#pragma once

#include <QtGlobal>

#include <vector>

namespace quilmora {

/// Filters the rows of a PNG file, from the top down, each with the one of the format's five filter types
/// whose residues, taken as signed bytes, have the smallest sum of magnitudes.
class PngFilter final
{
public:
    /// For rows of `rowBytes` bytes (at least 1), in which a pixel takes `pixelBytes` (1 to 8).
    PngFilter(qsizetype rowBytes, qsizetype pixelBytes);

    /// Where the next row is to be written, until it is filtered.
    uchar *row() { return m_current.data() + margin; }

    /// Writes the number of the chosen filter type and the residues of that row, `rowBytes` + 1 bytes, to
    /// `out`. Gives the sum of the residues' magnitudes.
    quint64 filterTo(uchar *out);

private:
    /// Zero bytes before a row: the pixel to the left of the first one.
    static constexpr qsizetype margin = 8;

    const qsizetype m_rowBytes;
    const qsizetype m_pixelBytes;
    std::vector<uchar> m_current;
    std::vector<uchar> m_above; ///< Zero above the first row.
    std::vector<uchar> m_best;
    std::vector<uchar> m_trial;
};

} // namespace quilmora
