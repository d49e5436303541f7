#include "imaging/PngFilter.h"

#include <algorithm>
#include <array>
#include <limits>

namespace quilmora {
namespace {

/// Bytes of a block: the sum of so many magnitudes fits into 16 bits, which allows wider vectors.
constexpr qsizetype block = 256;

/// A row and the one above it.
struct Rows {
    const uchar *row;
    const uchar *above;
    qsizetype bytes;
    qsizetype pixelBytes;
};

uchar noPrediction(uchar /*left*/, uchar /*up*/, uchar /*upLeft*/) { return 0; }

uchar leftPrediction(uchar left, uchar /*up*/, uchar /*upLeft*/) { return left; }

uchar upPrediction(uchar /*left*/, uchar up, uchar /*upLeft*/) { return up; }

uchar averagePrediction(uchar left, uchar up, uchar /*upLeft*/)
{
    return static_cast<uchar>((left + up) / 2);
}

short magnitude(short value) { return std::max(value, static_cast<short>(-value)); }

/// Whichever of the three is nearest to left + up - upLeft; of those equally near the first. In 16-bit
/// integers and without a branch, so that it can be vectorized.
uchar paethPrediction(uchar left, uchar up, uchar upLeft)
{
    const auto downwards = static_cast<short>(left - upLeft);
    const auto rightwards = static_cast<short>(up - upLeft);
    const short fromLeft = magnitude(rightwards);
    const short fromUp = magnitude(downwards);
    const short fromUpLeft = magnitude(static_cast<short>(downwards + rightwards));
    const uchar notLeft = fromUp <= fromUpLeft ? up : upLeft;
    return fromLeft <= std::min(fromUp, fromUpLeft) ? left : notLeft;
}

/// Writes the residues of `count` bytes, at most a block, and gives the sum of their magnitudes. Compilers
/// vectorize the loop on x86-64 and arm64.
template <auto Predict>
inline quint16 filterBlock(const uchar *__restrict row, const uchar *__restrict left,
                           const uchar *__restrict up, const uchar *__restrict upLeft, uchar *__restrict out,
                           qsizetype count)
{
    quint16 sum = 0;
    for (qsizetype i = 0; i < count; ++i) {
        const auto residue = static_cast<uchar>(row[i] - Predict(left[i], up[i], upLeft[i]));
        out[i] = residue;
        sum = static_cast<quint16>(sum + std::min(residue, static_cast<uchar>(-residue)));
    }
    return sum;
}

template <auto Predict>
quint64 filterFrom(const Rows &rows, qsizetype start, uchar *out)
{
    const uchar *row = rows.row + start;
    const uchar *above = rows.above + start;
    const uchar *left = row - rows.pixelBytes;
    const uchar *upLeft = above - rows.pixelBytes;
    // A constant count is compiled to faster code.
    return start + block <= rows.bytes
               ? filterBlock<Predict>(row, left, above, upLeft, out, block)
               : filterBlock<Predict>(row, left, above, upLeft, out, rows.bytes - start);
}

/// Writes the residues of a whole row and gives the sum of their magnitudes.
template <auto Predict>
quint64 filterRow(const Rows &rows, uchar *out)
{
    quint64 sum = 0;
    for (qsizetype start = 0; start < rows.bytes; start += block) {
        sum += filterFrom<Predict>(rows, start, out + start);
    }
    return sum;
}

using FilterType = quint64 (*)(const Rows &rows, uchar *out);

/// In the order of their numbers in the file.
constexpr std::array<FilterType, 5> filterTypes{
    filterRow<noPrediction>,      filterRow<leftPrediction>,  filterRow<upPrediction>,
    filterRow<averagePrediction>, filterRow<paethPrediction>,
};

} // namespace

PngFilter::PngFilter(qsizetype bytes, qsizetype bytesPerPixel)
    : m_rowBytes{bytes},
      m_pixelBytes{bytesPerPixel},
      m_current(static_cast<std::size_t>(margin + bytes)),
      m_above(m_current.size()),
      m_best(static_cast<std::size_t>(bytes)),
      m_trial(m_best.size())
{
}

quint64 PngFilter::filterTo(uchar *out)
{
    const Rows rows{m_current.data() + margin, m_above.data() + margin, m_rowBytes, m_pixelBytes};
    auto smallest = std::numeric_limits<quint64>::max();
    for (std::size_t number = 0; number < filterTypes.size(); ++number) {
        if (const quint64 sum = filterTypes.at(number)(rows, m_trial.data()); sum < smallest) {
            smallest = sum;
            out[0] = static_cast<uchar>(number);
            m_best.swap(m_trial);
        }
    }
    std::copy(m_best.begin(), m_best.end(), out + 1);
    m_current.swap(m_above);
    return smallest;
}

} // namespace quilmora
