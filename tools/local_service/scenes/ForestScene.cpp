#include "local_service/scenes/ForestScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace quilmora
{
namespace
{

void paintRange(SceneStage &stage, double level, double height, const QColor &top, const QColor &mist)
{
    const QPainterPath range = scenery::ridge(stage, level, height);
    QLinearGradient fill{stage.at(0, level - height), stage.at(0, level + 0.14)};
    fill.setColorAt(0, top);
    fill.setColorAt(1, mist);
    stage.painter.fillPath(range, fill);
}

/// A row of firs whose feet stand around `level`.
void paintWood(SceneStage &stage, double level, double smallest, double largest, const QColor &colour)
{
    double x = -0.02 * stage.width();
    while (x < 1.02 * stage.width()) {
        const double height = stage.between(smallest, largest);
        const QPointF foot{x, (level + stage.between(0, 0.03)) * stage.height()};
        stage.painter.fillPath(scenery::fir(foot, height), mixed(colour, Qt::black, stage.between(0, 0.25)));
        x += height * stage.between(0.16, 0.36);
    }
    const QPainterPath ground = scenery::ridge(stage, level, 0.02);
    stage.painter.fillPath(ground, mixed(colour, Qt::black, 0.15));
}

void paintMist(SceneStage &stage, double level, double strength)
{
    scenery::fillDown(stage, {stage.at(0, level - 0.10), stage.at(1, level + 0.08)},
                      {{0, faded({0xE8, 0xF6, 0xE0}, 0)},
                       {0.6, faded({0xE8, 0xF6, 0xE0}, strength)},
                       {1, faded({0xE8, 0xF6, 0xE0}, 0)}});
}

/// Large firs that frame the picture on both sides.
void paintFrame(SceneStage &stage)
{
    const QColor dark{0x06, 0x25, 0x1C};
    const double u = stage.unit();
    for (const auto &[x, height] : {std::pair{-0.005, 900.0}, {0.11, 470.0}, {1.005, 940.0}, {0.90, 450.0}}) {
        stage.painter.fillPath(scenery::fir(stage.at(x, 1.02), height * u), dark);
    }
    stage.painter.fillPath(scenery::ridge(stage, 0.985, 0.03), dark);
}

} // namespace

ColourPalette ForestScene::palette() const
{
    return {
        {0x04, 0x20, 0x1A}, {0x2F, 0x7A, 0x55}, {0xFF, 0xF0, 0xB8}, {0x9B, 0xE8, 0x4A}, {0x2F, 0xD0, 0x9A}};
}

void ForestScene::paintFar(SceneStage &stage) const
{
    const QRectF whole{QPointF{}, stage.size};
    scenery::fillDown(stage, whole,
                      {{0, {0x4F, 0xA8, 0xC8}},
                       {0.35, {0x9F, 0xD0, 0xC8}},
                       {0.6, {0xF2, 0xDE, 0xA8}},
                       {1, stage.palette.base}});
    const double reach = std::max(stage.width(), stage.height());
    lightEffects::glow(stage.painter, stage.at(0.42, 0.30), 0.45 * reach, stage.palette.glow, 0.45);
    paintRange(stage, 0.62, 0.34, {0x7F, 0xB2, 0xBC}, {0xD6, 0xEC, 0xDC});
    paintRange(stage, 0.70, 0.26, {0x4F, 0x90, 0x92}, {0xB2, 0xD9, 0xC0});
    paintMist(stage, 0.66, 0.55);
    paintRange(stage, 0.80, 0.22, {0x2E, 0x74, 0x66}, {0x86, 0xBC, 0x98});
    paintMist(stage, 0.76, 0.40);
    paintWood(stage, 0.82, 90 * stage.unit(), 170 * stage.unit(), {0x2A, 0x6B, 0x50});
    paintMist(stage, 0.84, 0.40);
}

void ForestScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    paintWood(stage, 0.94, 130 * u, 260 * u, {0x12, 0x45, 0x33});
    paintMist(stage, 0.93, 0.25);
    paintFrame(stage);
    const QRectF whole{QPointF{}, stage.size};
    lightEffects::bokeh(stage, whole, 26, 16 * u, 80 * u, {0xE8, 0xFF, 0x9A}, 0.20);
    lightEffects::dust(stage, {stage.at(0, 0.4), stage.at(1, 1)}, 130, 9 * u, {0xF4, 0xFF, 0xA8});
}

void ForestScene::paintLight(SceneStage &stage) const
{
    const double reach = 1.1 * std::max(stage.width(), stage.height());
    lightEffects::rays(stage, stage.at(0.50, -0.12), reach, 30, stage.palette.glow, 0.34);
}

} // namespace quilmora
