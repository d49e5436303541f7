#pragma once

#include <QImage>
#include <QSize>

#include <vector>

namespace quilmora {

/// Makes a picture smaller while its rows come in, from the top to the bottom: every pixel of the result is
/// the mean of the area that it stands for. Holds one row of sums, never the large picture.
class BoxScaler final
{
public:
    /// The form of the rows: 1 to 4 `channels`, of which the second and the fourth is alpha, `depth` 8 or 16
    /// bits a sample. `to` must be no wider and no higher than `from`, and neither empty.
    BoxScaler(QSize from, QSize to, int channels, int depth);

    /// Takes the next row.
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
    qint64 m_place = 0;        ///< Of the next row, in parts: a row has as many as the small picture rows.
    int m_row = 0;             ///< Of the small picture, that is being filled.
};

} // namespace quilmora
