#include "local_service/cover/CoverLayout.h"

#include <algorithm>

namespace quilmora::localservice {

CoverLayout CoverLayout::of(QSize size, bool hasTitle, bool hasPresenter)
{
    constexpr double clearlyWider = 1.15;
    const double width = size.width();
    const double height = size.height();
    CoverLayout layout;
    layout.unit = std::min(width, height) / 1000;
    if (!hasPresenter) {
        layout.focus = {0.5 * width, 0.46 * height};
        layout.title = hasTitle ? QRectF{0.07 * width, 0.17 * height, 0.86 * width, 0.62 * height} : QRectF{};
        layout.mostLines = width > height ? 3 : 5;
    } else if (!hasTitle) {
        layout.radius = 0.40 * std::min(width, height);
        layout.focus = {0.5 * width, 0.5 * height};
    } else if (width > clearlyWider * height) {
        layout.beside = true;
        layout.radius = std::min(0.395 * height, 0.222 * width);
        layout.focus = {0.95 * width - layout.radius, 0.505 * height};
        layout.title = {QPointF{0.052 * width, 0.105 * height},
                        QPointF{layout.focus.x() - layout.radius - 0.028 * width, 0.85 * height}};
    } else {
        layout.radius = std::min(0.415 * width, 0.255 * height);
        layout.focus = {0.5 * width, 0.915 * height - layout.radius};
        layout.title = {QPointF{0.06 * width, 0.07 * height},
                        QPointF{0.94 * width, layout.focus.y() - layout.radius - 0.035 * height}};
    }
    return layout;
}

} // namespace quilmora::localservice
