#include "support/ScreenCapture.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quilmora::test::screenCapture
{

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

} // namespace quilmora::test::screenCapture
