#pragma once

#include <QColor>

class QImage;

namespace quilmora::localservice {

/// The few colours that a cover keeps to.
struct Palette {
    QColor deep;    ///< The darkest tone: edges, outlines, shadows.
    QColor base;    ///< The main tone of the background.
    QColor glow;    ///< The colour of the light.
    QColor accent;  ///< Ring, bar and badge.
    QColor accent2; ///< The accent's partner in gradients.

    /// This palette with both accents, and a little of the light, taken from the two hues that are strongest
    /// in `picture` by saturation and area. A picture without colour changes nothing.
    Palette accentedBy(const QImage &picture) const;
};

/// `from` moved towards `to` by `amount` from 0 to 1, in sRGB.
QColor mixed(const QColor &from, const QColor &to, double amount);
/// `color` with the opacity `alpha` from 0 to 1.
QColor faded(const QColor &color, double alpha);

} // namespace quilmora::localservice
