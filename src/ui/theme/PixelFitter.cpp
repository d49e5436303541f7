#include "ui/theme/PixelFitter.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace quilmora {

PixelFitter::PixelFitter(double middle, double target, double scale)
    : m_middle{middle},
      m_target{target},
      m_scale{scale}
{
}

void PixelFitter::align(double place, double width)
{
    constexpr double leastDistance = 0.5;
    const auto next = m_aligned.lower_bound(place);
    const bool isCloseToNext = next != m_aligned.end() && (next->first - place) * m_scale < leastDistance;
    if (isCloseToNext ||
        (next != m_aligned.begin() && (place - std::prev(next)->first) * m_scale < leastDistance)) {
        return;
    }
    const double distance = std::abs(place - m_middle) * m_scale;
    const double start = std::round(m_target - distance - width / 2);
    const double fitted = distance < leastDistance / 2 ? 0 : m_target - start - width / 2;
    m_aligned[place] = place < m_middle ? m_target - fitted : m_target + fitted;
}

double PixelFitter::pixelAt(double place) const
{
    if (m_aligned.empty()) {
        return m_target + (place - m_middle) * m_scale;
    }
    const auto next = m_aligned.lower_bound(place);
    if (next == m_aligned.begin() || next == m_aligned.end()) {
        const auto nearest = next == m_aligned.begin() ? next : std::prev(next);
        return nearest->second + (place - nearest->first) * m_scale;
    }
    const auto previous = std::prev(next);
    return std::lerp(previous->second, next->second,
                     (place - previous->first) / (next->first - previous->first));
}

} // namespace quilmora
