#include "local_service/cover/DominantColours.h"

#include <QHash>
#include <QImage>

#include <algorithm>
#include <vector>

namespace quilmora::dominantColours
{
namespace
{

constexpr int sampleSide = 96;
constexpr int bitsDropped = 4;
constexpr double leastSaturation = 0.25;
constexpr double leastValue = 0.25;
constexpr int clearlyOtherHue = 35;

/// All pixels that fall into one cell of the colour cube.
struct Cell {
    double red = 0;
    double green = 0;
    double blue = 0;
    double weight = 0;

    QColor colour() const
    {
        return QColor::fromRgbF(static_cast<float>(red / weight), static_cast<float>(green / weight),
                                static_cast<float>(blue / weight));
    }
};

std::vector<Cell> cellsByWeight(const QImage &picture)
{
    const QImage sample =
        picture.scaled(sampleSide, sampleSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_ARGB32);
    QHash<QRgb, Cell> cells;
    for (int y = 0; y < sample.height(); ++y) {
        for (int x = 0; x < sample.width(); ++x) {
            const QColor pixel = sample.pixelColor(x, y);
            if (pixel.alpha() < 128 || pixel.hsvSaturationF() < leastSaturation ||
                pixel.valueF() < leastValue) {
                continue;
            }
            const QRgb key =
                qRgb(pixel.red() >> bitsDropped, pixel.green() >> bitsDropped, pixel.blue() >> bitsDropped);
            const double weight = double{pixel.hsvSaturationF()} * double{pixel.valueF()};
            Cell &cell = cells[key];
            cell.red += weight * double{pixel.redF()};
            cell.green += weight * double{pixel.greenF()};
            cell.blue += weight * double{pixel.blueF()};
            cell.weight += weight;
        }
    }
    std::vector<Cell> result{cells.cbegin(), cells.cend()};
    std::sort(result.begin(), result.end(), [](const Cell &a, const Cell &b) {
        // The hash has no order of its own to rely on.
        return a.weight != b.weight ? a.weight > b.weight : a.colour().rgb() > b.colour().rgb();
    });
    return result;
}

int hueDistance(const QColor &a, const QColor &b)
{
    const int distance = std::abs(a.hsvHue() - b.hsvHue());
    return std::min(distance, 360 - distance);
}

QColor asAccent(const QColor &colour)
{
    return QColor::fromHsvF(std::max(colour.hsvHueF(), 0.0F),
                            std::clamp(colour.hsvSaturationF(), 0.55F, 0.95F),
                            std::max(colour.valueF(), 0.90F));
}

} // namespace

std::optional<std::pair<QColor, QColor>> find(const QImage &picture)
{
    const std::vector<Cell> cells = cellsByWeight(picture);
    if (cells.empty()) {
        return std::nullopt;
    }
    const QColor first = cells.front().colour();
    for (const Cell &cell : cells) {
        if (hueDistance(first, cell.colour()) >= clearlyOtherHue) {
            return std::pair{asAccent(first), asAccent(cell.colour())};
        }
    }
    const QColor accent = asAccent(first);
    return std::pair{accent, accent.lighter(135)};
}

} // namespace quilmora::dominantColours
