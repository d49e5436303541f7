#include "gallery/ScreenshotPlan.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery {

QList<View> ScreenshotPlan::views(const Scene &scene) const
{
    // As the application opens its window, and as small as that can be.
    const View usual{{}, {1100, 1080}};
    const View smallest{u"-1000x700"_s, {1000, 700}};
    const View large{u"-1600x1000"_s, {1600, 1000}};
    const View whole{u"-whole"_s, {1000, 700}, true};
    if (!everySize) {
        return {usual};
    }
    switch (scene.sizes) {
    case Scene::Sizes::common:
        break;
    case Scene::Sizes::large:
        return {usual, smallest, large};
    case Scene::Sizes::scrolls:
        return {usual, smallest, large, whole};
    }
    return {usual, smallest};
}

QString pictureName(const Scene &scene, const View &view, ColorScheme scheme, int ratio)
{
    const QString look = scheme == ColorScheme::light ? u"-light"_s : u"-dark"_s;
    const QString resolution = ratio == 1 ? QString{} : u"@%1x"_s.arg(ratio);
    return scene.name + view.suffix + look + resolution + u".png"_s;
}

} // namespace quilmora::gallery
