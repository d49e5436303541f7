#include "support/ScreenCapture.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
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

int countOf(const QImage &picture, const QColor &color, QRect area, int tolerance)
{
    const QRect looked = area.isEmpty() ? picture.rect() : area & picture.rect();
    int count = 0;
    for (int y = looked.top(); y <= looked.bottom(); ++y) {
        for (int x = looked.left(); x <= looked.right(); ++x) {
            count += isClose(picture.pixelColor(x, y), color, tolerance) ? 1 : 0;
        }
    }
    return count;
}

QString text(const QColor &color)
{
    return color.name(QColor::HexArgb).toUpper();
}

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
