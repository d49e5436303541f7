#include "imaging/BoxScaler.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace quilmora {
namespace {

constexpr float brightest = 255;

template <typename Sample>
const Sample *samples(const uchar *row)
{
    return static_cast<const Sample *>(static_cast<const void *>(row));
}

template <typename Sample>
void addOpaque(float *sums, const uchar *row, std::size_t count, float share)
{
    const auto *values = samples<Sample>(row);
    for (std::size_t i = 0; i < count; ++i) {
        sums[i] += share * static_cast<float>(values[i]);
    }
}

/// Colors are weighted by alpha, the last of the `Channels`.
template <typename Sample, std::size_t Channels>
void addTransparent(float *sums, const uchar *row, std::size_t count, float share)
{
    constexpr auto full = static_cast<float>(std::numeric_limits<Sample>::max());
    const auto *values = samples<Sample>(row);
    for (std::size_t i = 0; i < count; i += Channels) {
        const float visible = share * static_cast<float>(values[i + Channels - 1]);
        const float factor = visible / full;
        for (std::size_t channel = 0; channel + 1 < Channels; ++channel) {
            sums[i + channel] += factor * static_cast<float>(values[i + channel]);
        }
        sums[i + Channels - 1] += visible;
    }
}

template <typename Sample>
void addRow(float *sums, const uchar *row, std::size_t count, float share, int channels)
{
    if (channels == 4) {
        addTransparent<Sample, 4>(sums, row, count, share);
    } else if (channels == 2) {
        addTransparent<Sample, 2>(sums, row, count, share);
    } else {
        addOpaque<Sample>(sums, row, count, share);
    }
}

/// Calls `write` with each position in the small row and its sums. A column of the large picture
/// counts as many units as the small one has columns, so that all shares are integers.
template <std::size_t Channels, typename Write>
void forEachMean(const float *sums, int from, int to, Write write)
{
    const float *column = sums;
    int left = to; // Units of the current column that remain.
    for (int position = 0; position < to; ++position) {
        std::array<float, Channels> total{};
        int needed = from;
        while (needed > 0) {
            const int share = std::min(needed, left);
            for (std::size_t channel = 0; channel < Channels; ++channel) {
                total[channel] += static_cast<float>(share) * column[channel];
            }
            needed -= share;
            left -= share;
            if (left == 0) {
                column += Channels;
                left = to;
            }
        }
        write(position, total);
    }
}

int rounded(float value) { return static_cast<int>(std::min(value + 0.5F, brightest)); }

} // namespace

BoxScaler::BoxScaler(QSize from, QSize to, int channels, int depth)
    : m_large{from},
      m_channelCount{channels},
      m_bits{depth},
      m_reduced{to, channels % 2 == 0 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32},
      m_sums(static_cast<std::size_t>(from.width()) * static_cast<std::size_t>(channels))
{
}

void BoxScaler::add(const uchar *bytes)
{
    const qint64 boundary = qint64{m_row + 1} * m_large.height();
    const qint64 end = m_place + m_reduced.height();
    if (end < boundary) {
        addShare(bytes, m_reduced.height());
    } else {
        addShare(bytes, static_cast<int>(boundary - m_place));
        writeRow();
        ++m_row;
        std::fill(m_sums.begin(), m_sums.end(), 0.0F);
        if (end > boundary) {
            addShare(bytes, static_cast<int>(end - boundary));
        }
    }
    m_place = end;
}

void BoxScaler::addShare(const uchar *bytes, int share)
{
    const auto weight = static_cast<float>(share);
    if (m_bits == 16) {
        addRow<quint16>(m_sums.data(), bytes, m_sums.size(), weight, m_channelCount);
    } else {
        addRow<quint8>(m_sums.data(), bytes, m_sums.size(), weight, m_channelCount);
    }
}

void BoxScaler::writeRow()
{
    auto *line = static_cast<QRgb *>(static_cast<void *>(m_reduced.scanLine(m_row)));
    const float area = static_cast<float>(m_large.width()) * static_cast<float>(m_large.height());
    const float scale = (m_bits == 16 ? brightest / 0xffff : 1.0F) / area;
    const auto level = [scale](float total) {
        return rounded(total * scale);
    };
    const int from = m_large.width();
    const int to = m_reduced.width();
    switch (m_channelCount) {
    case 1:
        forEachMean<1>(m_sums.data(), from, to, [&](int x, const auto &sum) {
            const int grey = level(sum[0]);
            line[x] = qRgb(grey, grey, grey);
        });
        break;
    case 2:
        forEachMean<2>(m_sums.data(), from, to, [&](int x, const auto &sum) {
            const int grey = level(sum[0]);
            line[x] = qRgba(grey, grey, grey, level(sum[1]));
        });
        break;
    case 3:
        forEachMean<3>(m_sums.data(), from, to, [&](int x, const auto &sum) {
            line[x] = qRgb(level(sum[0]), level(sum[1]), level(sum[2]));
        });
        break;
    default:
        forEachMean<4>(m_sums.data(), from, to, [&](int x, const auto &sum) {
            line[x] = qRgba(level(sum[0]), level(sum[1]), level(sum[2]), level(sum[3]));
        });
    }
}

} // namespace quilmora
