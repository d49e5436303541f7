#include "SampleScene.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

/// A part of the way from 0 to 1.
double part(std::mt19937 &random)
{
    constexpr unsigned int steps = 1000;
    return static_cast<double>(random() % steps) / steps;
}

void paintHouses(QPainter &painter, QSizeF size, std::mt19937 &random)
{
    double left = 0;
    while (left < size.width()) {
        const double width = size.width() * (0.05 + 0.06 * part(random));
        const double top = size.height() * (0.15 + 0.35 * part(random));
        const auto hue = static_cast<int>(random() % 360U);
        QLinearGradient wall{left, top, left + width, size.height()};
        wall.setColorAt(0, QColor::fromHsv(hue, 60, 210));
        wall.setColorAt(1, QColor::fromHsv(hue, 90, 110));
        painter.fillRect(QRectF{left, top, width, size.height() - top}, wall);
        const double step = size.height() * 0.035;
        const int storeys = static_cast<int>((size.height() * 0.85 - top - step) / (step * 1.6)) + 1;
        const int columns = static_cast<int>((width - step) / step) + 1;
        for (int storey = 0; storey < storeys; ++storey) {
            for (int column = 0; column < columns; ++column) {
                const QRectF window{left + step * (0.5 + column), top + step * (1 + 1.6 * storey),
                                    step * 0.55, step};
                const bool lit = random() % 4U == 0;
                const int dark = 60 + static_cast<int>(random() % 50U);
                painter.fillRect(window, lit ? QColor{250, 226, 160} : QColor::fromHsv(210, 80, dark));
            }
        }
        left += width;
    }
}

void paintWriting(QPainter &painter, QSizeF size, int lines, std::mt19937 &random)
{
    static const QStringList texts{u"这个秘密改变了一切"_s, u"OPEN 24 HOURS"_s, u"第 3 集 · 城市的夜晚"_s,
                                   u"咖啡 Coffee & Tea"_s};
    QFont font;
    for (int line = 0; line < lines; ++line) {
        font.setPixelSize(std::max(8, static_cast<int>(size.height() * (0.012 + 0.024 * part(random)))));
        painter.setFont(font);
        painter.setPen(QColor::fromHsv(static_cast<int>(random() % 360U), 120, 240));
        const double left = size.width() * 0.9 * part(random);
        painter.drawText(QPointF{left, size.height() * part(random)},
                         texts.at(static_cast<int>(random() % 4U)));
    }
}

void paintFace(QPainter &painter, QSizeF size)
{
    const QPointF centre{size.width() * 0.5, size.height() * 0.48};
    const double across = std::min(size.width(), size.height()) * 0.26;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor{52, 60, 92});
    painter.drawRoundedRect(
        QRectF{centre.x() - across * 1.7, centre.y() + across * 1.1, across * 3.4, size.height()}, across,
        across);
    painter.setBrush(QColor{38, 28, 24});
    painter.drawEllipse(centre - QPointF{0, across * 0.25}, across * 1.12, across * 1.3);
    QRadialGradient skin{centre - QPointF{across * 0.3, across * 0.4}, across * 1.9};
    skin.setColorAt(0, QColor{244, 212, 188});
    skin.setColorAt(0.6, QColor{214, 166, 138});
    skin.setColorAt(1, QColor{128, 84, 66});
    painter.setBrush(skin);
    painter.drawEllipse(centre, across * 0.92, across * 1.18);
    for (const double side : {-1.0, 1.0}) {
        const QPointF eye = centre + QPointF{side * across * 0.36, -across * 0.12};
        painter.setBrush(QColor{246, 243, 240});
        painter.drawEllipse(eye, across * 0.16, across * 0.09);
        painter.setBrush(QColor{60, 40, 28});
        painter.drawEllipse(eye, across * 0.08, across * 0.085);
    }
    painter.setBrush(QColor{176, 84, 84});
    painter.drawEllipse(centre + QPointF{0, across * 0.55}, across * 0.3, across * 0.1);
}

} // namespace

QImage paintScene(Scene scene, QSize size, std::mt19937 &random)
{
    QImage image{size, QImage::Format_RGB32};
    QPainter painter{&image};
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky{0, 0, size.width() * 0.3, static_cast<double>(size.height())};
    sky.setColorAt(0, scene == Scene::night ? QColor{10, 14, 34} : QColor{96, 148, 214});
    sky.setColorAt(0.6, scene == Scene::night ? QColor{44, 36, 62} : QColor{206, 216, 222});
    sky.setColorAt(1, scene == Scene::night ? QColor{20, 18, 26} : QColor{112, 128, 74});
    painter.fillRect(image.rect(), sky);
    switch (scene) {
    case Scene::portrait:
        paintFace(painter, size);
        break;
    case Scene::street:
        paintHouses(painter, size, random);
        paintWriting(painter, size, 24, random);
        break;
    case Scene::night:
        painter.setOpacity(0.4);
        paintHouses(painter, size, random);
        paintWriting(painter, size, 6, random);
        break;
    case Scene::meadow:
        paintFace(painter, size);
        break;
    }
    return image;
}

} // namespace quilmora::bench
