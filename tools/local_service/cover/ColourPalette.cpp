#include "local_service/cover/ColourPalette.h"

namespace quilmora
{

ColourPalette ColourPalette::accentedBy(const QColor &first, const QColor &second) const
{
    ColourPalette result = *this;
    result.accent = first;
    result.accent2 = second;
    result.glow = mixed(glow, first, 0.22);
    result.base = mixed(base, first, 0.14);
    result.deep = mixed(deep, first.darker(500), 0.30);
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

QColor faded(const QColor &colour, double alpha)
{
    QColor result = colour;
    result.setAlphaF(static_cast<float>(alpha));
    return result;
}

} // namespace quilmora
