#include "local_service/cover/Palette.h"

#include <QImage>

#include <algorithm>
#include <array>

namespace quilmora::localservice {
namespace {

constexpr int sampleSide = 64;
constexpr std::size_t hues = 24;

/// How much of each hue `picture` shows, by saturation and area.
std::array<double, hues> hueWeights(const QImage &picture)
{
    std::array<double, hues> result{};
    const QImage sample =
        picture.scaled(sampleSide, sampleSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_ARGB32);
    for (int i = 0; i < sampleSide * sampleSide; ++i) {
        const QColor pixel = sample.pixelColor(i % sampleSide, i / sampleSide);
        if (pixel.alpha() >= 128 && pixel.hsvSaturation() >= 64 && pixel.value() >= 64) {
            const std::size_t hue = (static_cast<std::size_t>(pixel.hsvHue()) * hues + 180) / 360 % hues;
            result[hue] += pixel.hsvSaturation() * pixel.value();
        }
    }
    return result;
}

} // namespace

Palette Palette::accentedBy(const QImage &picture) const
{
    std::array<double, hues> weights = hueWeights(picture);
    const auto strongest = [&weights] {
        return static_cast<std::size_t>(std::max_element(weights.begin(), weights.end()) - weights.begin());
    };
    const std::size_t first = strongest();
    if (weights[first] <= 0) {
        return *this;
    }
    // The second one must be clearly another one.
    for (const std::size_t near : {hues - 2, hues - 1, hues, hues + 1, hues + 2}) {
        weights[(first + near) % hues] = 0;
    }
    const std::size_t second = strongest();
    const auto accentOf = [](std::size_t hue) {
        return QColor::fromHsv(static_cast<int>(hue * 360 / hues), 215, 240);
    };
    Palette result = *this;
    result.accent = accentOf(first);
    result.accent2 = weights[second] > 0 ? accentOf(second) : result.accent.lighter(135);
    result.glow = mixed(glow, result.accent, 0.22);
    result.base = mixed(base, result.accent, 0.14);
    result.deep = mixed(deep, result.accent.darker(500), 0.30);
    return result;
}

QColor mixed(const QColor &from, const QColor &to, double amount)
{
    const auto part = static_cast<float>(amount);
    const auto blend = [part](float a, float b) {
        return a + (b - a) * part;
    };
    return QColor::fromRgbF(blend(from.redF(), to.redF()), blend(from.greenF(), to.greenF()),
                            blend(from.blueF(), to.blueF()), blend(from.alphaF(), to.alphaF()));
}

QColor faded(const QColor &color, double alpha)
{
    QColor result = color;
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

} // namespace quilmora::localservice
