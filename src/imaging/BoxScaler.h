#pragma once

#include <QImage>
#include <QSize>

#include <vector>

namespace quilmora {

/// Reduces a picture row by row, from the top down: every pixel of the result is the mean of its area in the
/// picture. Stores one row of sums.
class BoxScaler final
{
public:
    /// Rows have 1 to 4 `channels`, the second and the fourth being alpha, and `depth` 8 or 16 bits a sample.
    /// `to` must be no wider and no higher than `from`, and neither empty.
    BoxScaler(QSize from, QSize to, int channels, int depth);

    void add(const uchar *row);

    /// The small picture, complete after the last row.
    const QImage &image() const { return m_reduced; }

private:
    void addShare(const uchar *row, int share);
    void writeRow();

    const QSize m_large;
    const int m_channelCount;
    const int m_bits;
    QImage m_reduced;
    std::vector<float> m_sums; ///< Of the row of the small picture that is being filled.
    qint64 m_place = 0;        ///< Of the next row. A row counts as many units as the small picture has rows.
    int m_row = 0;             ///< Of the small picture, that is being filled.
};

} // namespace quilmora
