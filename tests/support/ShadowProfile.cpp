#include "support/ShadowProfile.h"

#include "support/Drawing.h"
#include "support/ScreenCapture.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

/// The part of a bell curve that lies below `x`.
double bellBelow(double x, double deviation)
{
    return 0.5 * (1 + std::erf(x / deviation / std::numbers::sqrt2));
}

/// What is left of a band from `from` to `to` at the place `x`, once it is blurred.
double blurredBand(double x, double from, double to, double deviation)
{
    return bellBelow(x - from, deviation) - bellBelow(x - to, deviation);
}

/// The picture that reaches beyond the shape on all sides and has no hard edge of its own.
const DrawnPixmap *shadowOf(const Drawing &drawing, const QRectF &shape)
{
    const auto &pixmaps = drawing.pixmaps();
    const auto found = std::find_if(pixmaps.begin(), pixmaps.end(), [&shape](const DrawnPixmap &drawn) {
        return drawn.place.contains(shape) && drawn.place.width() > shape.width() &&
               drawn.place.width() < shape.width() + 100;
    });
    return found == pixmaps.end() ? nullptr : &*found;
}

} // namespace

QString shadowDifference(const Drawing &drawing, const QRectF &shape, const ExpectedShadow &expected,
                         bool roundEnds)
{
    const DrawnPixmap *drawn = shadowOf(drawing, shape);
    if (drawn == nullptr) {
        return u"no shadow is drawn"_s;
    }
    const QImage picture = drawn->pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    const QRectF cast = shape.translated(expected.offset);
    const double deviation = expected.blurRadius / 2;
    const double whole = expected.color.alpha();
    const double tolerance = 0.65 + 0.015 * whole;
    const auto differs = [&](int x, int y) {
        // The middle of a pixel, in the coordinates of the widget.
        const QPointF place = drawn->place.topLeft() + QPointF{x + 0.5, y + 0.5};
        const double alpha = whole * blurredBand(place.x(), cast.left(), cast.right(), deviation) *
                             blurredBand(place.y(), cast.top(), cast.bottom(), deviation);
        return std::abs(qAlpha(picture.pixel(x, y)) - alpha) > tolerance
                   ? u"at (%1, %2) it is %3, not %4"_s.arg(place.x())
                         .arg(place.y())
                         .arg(qAlpha(picture.pixel(x, y)))
                         .arg(alpha)
                   : QString{};
    };
    const QPoint middle = picture.rect().center();
    for (int y = 0; y < picture.height(); ++y) {
        if (QString difference = differs(middle.x(), y); !difference.isEmpty()) {
            return difference;
        }
    }
    for (int x = 0; x < picture.width() && !roundEnds; ++x) {
        if (QString difference = differs(x, middle.y()); !difference.isEmpty()) {
            return difference;
        }
    }
    // Whether it is centred across also where the ends are round.
    const QPointF centre = drawn->place.center() - cast.center();
    if (std::abs(centre.x()) > 0.5 || std::abs(centre.y()) > 0.5) {
        return u"it lies (%1, %2) from its place"_s.arg(centre.x()).arg(centre.y());
    }
    const QColor seen = picture.pixelColor(middle);
    return screenCapture::isClose(seen, expected.color, 5)
               ? QString{}
               : u"its colour is %1"_s.arg(screenCapture::text(seen));
}

} // namespace quilmora::test
