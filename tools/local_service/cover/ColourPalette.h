#pragma once

#include <QColor>

namespace quilmora
{

/// The few colours that a cover keeps to.
struct ColourPalette {
    QColor deep;    ///< The darkest tone: edges, outlines, shadows.
    QColor base;    ///< The main tone of the background.
    QColor glow;    ///< The colour of the light.
    QColor accent;  ///< Ring, bars and badges.
    QColor accent2; ///< The accent's partner in gradients.

    /// This palette with the accents, and a breath of the light, taken from the first two of `colours`.
    ColourPalette accentedBy(const QColor &first, const QColor &second) const;
};

/// `from` moved towards `to` by `amount` from 0 to 1, in sRGB.
QColor mixed(const QColor &from, const QColor &to, double amount);
/// `colour` with the opacity `alpha` from 0 to 1.
QColor faded(const QColor &colour, double alpha);

} // namespace quilmora
