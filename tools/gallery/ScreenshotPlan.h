#pragma once

#include "gallery/Scene.h"
#include "ui/theme/Theme.h"

#include <QSize>

namespace quilmora::gallery {

/// One size of the window in which a scene is taken.
struct View {
    QString suffix;     ///< In the names of the pictures; empty for the usual size.
    QSize size;         ///< In device-independent pixels.
    bool whole = false; ///< As high as the page; only the width of `size` counts.
};

/// Which pictures the gallery has.
struct ScreenshotPlan {
    QList<ColorScheme> schemes{ColorScheme::light, ColorScheme::dark};
    QList<int> ratios{1, 2}; ///< Pixels per device-independent one.
    bool everySize = true;   ///< Else the usual one only.

    QList<View> views(const Scene &scene) const;
};

/// The name of the file with that picture: "form-filled-dark@2x.png".
QString pictureName(const Scene &scene, const View &view, ColorScheme scheme, int ratio);

} // namespace quilmora::gallery
