#include "screens/common/PixelFit.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace quilmora
{

PixelFit::PixelFit(double middlePlace, double middlePixel, double pixelsPerUnit)
    : middle{middlePlace},
      target{middlePixel},
      scale{pixelsPerUnit}
{
}

void PixelFit::align(double place, double width)
{
    constexpr double leastDistance = 0.5;
    const auto next = aligned.lower_bound(place);
    const bool isCloseToNext = next != aligned.end() && (next->first - place) * scale < leastDistance;
    if (isCloseToNext ||
        (next != aligned.begin() && (place - std::prev(next)->first) * scale < leastDistance)) {
        return;
    }
    const double distance = std::abs(place - middle) * scale;
    const double start = std::round(target - distance - width / 2);
    const double fitted = distance < leastDistance / 2 ? 0 : target - start - width / 2;
    aligned[place] = place < middle ? target - fitted : target + fitted;
}

double PixelFit::pixelAt(double place) const
{
    if (aligned.empty()) {
        return target + (place - middle) * scale;
    }
    const auto next = aligned.lower_bound(place);
    if (next == aligned.begin() || next == aligned.end()) {
        const auto nearest = next == aligned.begin() ? next : std::prev(next);
        return nearest->second + (place - nearest->first) * scale;
    }
    const auto previous = std::prev(next);
    return std::lerp(previous->second, next->second,
                     (place - previous->first) / (next->first - previous->first));
}

} // namespace quilmora
