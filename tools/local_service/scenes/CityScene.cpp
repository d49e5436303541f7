#include "local_service/scenes/CityScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <array>

namespace quilmora
{
namespace
{

constexpr double street = 0.80;

void paintMoon(SceneStage &stage)
{
    const QPointF centre = stage.at(0.50, 0.17);
    const double radius = 62 * stage.unit();
    lightEffects::glow(stage.painter, centre, radius * 5, {0xC8, 0xD0, 0xFF}, 0.55);
    QRadialGradient disc{centre - QPointF{radius * 0.3, radius * 0.3}, radius * 1.4};
    disc.setColorAt(0, QColor{0xFF, 0xFD, 0xF0});
    disc.setColorAt(1, QColor{0xD8, 0xD4, 0xF0});
    stage.painter.setPen(Qt::NoPen);
    stage.painter.setBrush(disc);
    stage.painter.drawEllipse(centre, radius, radius);
}

/// Lights of the street as they stretch in the wet ground.
void paintReflections(SceneStage &stage)
{
    static const std::array<QColor, 4> lights{QColor{0xFF, 0x6A, 0xB0}, QColor{0xFF, 0xB8, 0x55},
                                              QColor{0x52, 0xD8, 0xFF}, QColor{0xB0, 0x7A, 0xFF}};
    const double u = stage.unit();
    stage.painter.setCompositionMode(QPainter::CompositionMode_Plus);
    for (int i = 0; i < 70; ++i) {
        const double x = stage.between(0, stage.width());
        const double top = street * stage.height();
        const double length = stage.between(0.25, 1) * (stage.height() - top);
        const QColor colour = lights[static_cast<std::size_t>(i) % lights.size()];
        QLinearGradient fade{x, top, x, top + length};
        fade.setColorAt(0, faded(colour, stage.between(0.25, 0.65)));
        fade.setColorAt(1, faded(colour, 0));
        stage.painter.fillRect(QRectF{x, top, stage.between(8, 34) * u, length}, fade);
    }
    stage.painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

} // namespace

ColourPalette CityScene::palette() const
{
    return {
        {0x08, 0x07, 0x22}, {0x33, 0x1F, 0x6E}, {0xFF, 0x9E, 0x7A}, {0xFF, 0x5C, 0x9E}, {0x38, 0xC8, 0xFF}};
}

void CityScene::paintFar(SceneStage &stage) const
{
    const double u = stage.unit();
    scenery::fillDown(stage, {QPointF{}, stage.size},
                      {{0, {0x0A, 0x0B, 0x33}},
                       {0.35, {0x38, 0x20, 0x78}},
                       {0.62, {0xC4, 0x4A, 0x8A}},
                       {street, {0xFF, 0x9A, 0x6A}},
                       {street + 0.001, {0x1C, 0x12, 0x40}},
                       {1, {0x07, 0x05, 0x18}}});
    lightEffects::dust(stage, {QPointF{}, stage.at(1, 0.45)}, 120, 5 * u, Qt::white);
    paintMoon(stage);
    const double reach = std::max(stage.width(), stage.height());
    lightEffects::glow(stage.painter, stage.at(0.55, street), 0.45 * reach, stage.palette.glow, 0.55);
    const auto row = [&stage](double top) {
        return QRectF{stage.at(0, top), stage.at(1, street)};
    };
    scenery::skyline(stage, row(0.30), {60 * u, 105 * u, {0x5A, 0x2F, 0x7E}, {0xFF, 0xC8, 0xB0}, 0.20});
    scenery::skyline(stage, row(0.40), {85 * u, 150 * u, {0x32, 0x1C, 0x5C}, {0xFF, 0xD4, 0x88}, 0.34});
    paintReflections(stage);
}

void CityScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    const QRectF front{stage.at(0, 0.58), stage.at(1, street)};
    scenery::skyline(stage, front, {110 * u, 210 * u, {0x14, 0x0C, 0x34}, {0xFF, 0xDD, 0x9A}, 0.42});
    stage.painter.fillRect(QRectF{0, front.bottom() - 2 * u, stage.width(), 4 * u}, QColor{0xFF, 0xC2, 0x8A});
    lightEffects::glow(stage.painter, stage.focus, 0.8 * stage.height(), stage.palette.accent, 0.30);
    const QRectF lower{stage.at(0, 0.62), stage.at(1, 1)};
    lightEffects::bokeh(stage, lower, 14, 40 * u, 150 * u, stage.palette.accent, 0.22);
    lightEffects::bokeh(stage, lower, 14, 40 * u, 140 * u, {0xFF, 0xB8, 0x55}, 0.22);
    lightEffects::bokeh(stage, lower, 12, 30 * u, 120 * u, stage.palette.accent2, 0.22);
}

void CityScene::paintLight(SceneStage &stage) const
{
    lightEffects::rays(stage, stage.focus, stage.width(), 13, stage.palette.accent, 0.20);
}

} // namespace quilmora
