#include "local_service/cover/CoverLayout.h"

#include <algorithm>
#include <numbers>

namespace quilmora
{
namespace
{

constexpr double clearlyWider = 1.15;

CoverLayout besidePresenter(double width, double height)
{
    CoverLayout layout;
    const double radius = std::min(0.395 * height, 0.222 * width);
    layout.radius = radius;
    layout.focus = {width - radius - 0.05 * width, 0.505 * height};
    const double left = 0.052 * width;
    const double right = layout.focus.x() - radius - 0.018 * width;
    layout.title = {QPointF{left, 0.105 * height}, QPointF{right, 0.85 * height}};
    layout.mostLines = 4;
    layout.centred = false;
    layout.sideways = true;
    return layout;
}

CoverLayout abovePresenter(double width, double height)
{
    CoverLayout layout;
    const double radius = std::min(0.415 * width, 0.255 * height);
    layout.radius = radius;
    layout.focus = {0.5 * width, height - radius - 0.085 * height};
    const double top = 0.07 * height;
    const double bottom = layout.focus.y() - radius - 0.035 * height;
    layout.title = {QPointF{0.06 * width, top}, QPointF{0.94 * width, bottom}};
    layout.mostLines = 4;
    return layout;
}

CoverLayout titleAlone(double width, double height)
{
    CoverLayout layout;
    layout.focus = {0.5 * width, 0.46 * height};
    layout.title = {0.07 * width, 0.17 * height, 0.86 * width, 0.62 * height};
    layout.mostLines = width > height ? 3 : 5;
    return layout;
}

CoverLayout presenterAlone(double width, double height)
{
    CoverLayout layout;
    layout.radius = 0.40 * std::min(width, height);
    layout.focus = {0.5 * width, 0.5 * height};
    return layout;
}

} // namespace

CoverLayout CoverLayout::of(QSize size, bool hasTitle, bool hasPresenter)
{
    const double width = size.width();
    const double height = size.height();
    CoverLayout layout;
    if (hasTitle && hasPresenter) {
        layout =
            width > clearlyWider * height ? besidePresenter(width, height) : abovePresenter(width, height);
    } else if (hasPresenter) {
        layout = presenterAlone(width, height);
    } else {
        layout = titleAlone(width, height);
        if (!hasTitle) {
            layout.title = {};
        }
    }
    layout.unit = std::min(width, height) / 1000;
    const double corner = layout.radius * std::numbers::sqrt2 / 2;
    layout.badge =
        hasPresenter ? layout.focus + QPointF{corner, corner} * 1.02 : QPointF{0.5 * width, 0.85 * height};
    return layout;
}

} // namespace quilmora
