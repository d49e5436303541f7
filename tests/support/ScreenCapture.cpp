#include "support/ScreenCapture.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace quilmora::test::screenCapture {

QImage capture(QWidget *widget, double devicePixelRatio)
{
    QImage picture{(QSizeF{widget->size()} * devicePixelRatio).toSize(), QImage::Format_ARGB32};
    picture.setDevicePixelRatio(devicePixelRatio);
    picture.fill(Qt::transparent);
    widget->render(&picture, {}, {}, QWidget::DrawChildren);
    return picture;
}

QColor colorAt(const QImage &picture, QPointF place)
{
    const QPointF pixel = place * picture.devicePixelRatio();
    return picture.pixelColor(static_cast<int>(std::floor(pixel.x())),
                              static_cast<int>(std::floor(pixel.y())));
}

QColor srgb(double red, double green, double blue, double opacity)
{
    return QColor::fromRgba(QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                                             static_cast<float>(blue), static_cast<float>(opacity))
                                .rgba());
}

bool isClose(const QColor &first, const QColor &second, int tolerance)
{
    return std::abs(first.red() - second.red()) <= tolerance &&
           std::abs(first.green() - second.green()) <= tolerance &&
           std::abs(first.blue() - second.blue()) <= tolerance &&
           std::abs(first.alpha() - second.alpha()) <= tolerance;
}

int countIf(const QImage &picture, const std::function<bool(const QColor &)> &condition, QRect area)
{
    const QRect looked = area.isEmpty() ? picture.rect() : area & picture.rect();
    int count = 0;
    for (int y = looked.top(); y <= looked.bottom(); ++y) {
        for (int x = looked.left(); x <= looked.right(); ++x) {
            count += condition(picture.pixelColor(x, y)) ? 1 : 0;
        }
    }
    return count;
}

int countOf(const QImage &picture, const QColor &color, QRect area, int tolerance)
{
    return countIf(
        picture, [&](const QColor &pixel) { return isClose(pixel, color, tolerance); }, area);
}

int countBeside(const QImage &picture, const QColor &color, QRect area, int tolerance)
{
    return countIf(
        picture, [&](const QColor &pixel) { return !isClose(pixel, color, tolerance); }, area);
}

int countDifferent(const QImage &first, const QImage &second, QRect area, int tolerance)
{
    const QRect looked = area.isEmpty() ? first.rect() : area;
    int count = 0;
    for (int y = looked.top(); y <= looked.bottom(); ++y) {
        for (int x = looked.left(); x <= looked.right(); ++x) {
            count += isClose(first.pixelColor(x, y), second.pixelColor(x, y), tolerance) ? 0 : 1;
        }
    }
    return count;
}

QList<QPoint> runs(int count, const std::function<bool(int)> &isSo)
{
    QList<QPoint> found;
    for (int i = 0; i < count; ++i) {
        if (isSo(i) && (i == 0 || !isSo(i - 1))) {
            found.append({i, 0});
        }
        if (isSo(i)) {
            ++found.last().ry();
        }
    }
    return found;
}

QString differenceFromAccentGradient(const QImage &face, int tolerance)
{
    const std::array stops{srgb(0.1, 0.8, 0.85), srgb(0.275, 0.575, 0.9), srgb(0.45, 0.35, 0.95),
                           srgb(0.7, 0.325, 0.85), srgb(0.95, 0.3, 0.75)};
    for (std::size_t quarter = 0; quarter < stops.size(); ++quarter) {
        // The outermost columns are clipped by round ends; elsewhere the text is passed above.
        const bool isEnd = quarter == 0 || quarter == stops.size() - 1;
        const double x = std::clamp(face.width() * static_cast<double>(quarter) / 4, 1.0, face.width() - 2.0);
        const QColor seen = colorAt(face, {x, isEnd ? face.height() / 2.0 : 5});
        if (!isClose(seen, stops.at(quarter), tolerance)) {
            return QStringLiteral("after %1 quarters it is %2").arg(quarter).arg(text(seen));
        }
    }
    return {};
}

QString text(const QColor &color) { return color.name(QColor::HexArgb).toUpper(); }

QColor over(const QColor &color, const QColor &ground)
{
    const float shining = ground.alphaF() * (1 - color.alphaF());
    const float opacity = color.alphaF() + shining;
    const auto mix = [&](float above, float below) {
        return (above * color.alphaF() + below * shining) / opacity;
    };
    return srgb(mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()),
                mix(color.blueF(), ground.blueF()), opacity);
}

bool isPlain(const QImage &picture, QRect area, const QColor &color)
{
    return countOf(picture, color, area) == area.width() * area.height();
}

} // namespace quilmora::test::screenCapture
