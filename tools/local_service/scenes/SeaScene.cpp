#include "local_service/scenes/SeaScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace quilmora
{
namespace
{

constexpr double horizon = 0.56;
constexpr double shore = 0.80;

void paintCloud(SceneStage &stage, QPointF centre, double width)
{
    for (int i = 0; i < 15; ++i) {
        const double along = stage.between(-0.5, 0.5);
        const double radius = width * stage.between(0.08, 0.20) * (1.15 - 1.4 * std::abs(along));
        const QPointF puff = centre + QPointF{along * width, -radius * stage.between(0.2, 0.9)};
        QRadialGradient soft{puff, radius};
        soft.setColorAt(0, faded(Qt::white, 0.85));
        soft.setColorAt(0.6, faded(Qt::white, 0.55));
        soft.setColorAt(1, faded(Qt::white, 0));
        stage.painter.setBrush(soft);
        stage.painter.drawEllipse(puff, radius, radius);
    }
}

QPainterPath shoreLine(const SceneStage &stage, double level)
{
    QPainterPath path{stage.at(0, 1.01)};
    for (int i = 0; i <= 60; ++i) {
        const double share = i / 60.0;
        path.lineTo(stage.at(share, level + 0.020 * std::sin(7 * share + 0.6) + 0.008 * std::sin(19 * share) -
                                        0.05 * share));
    }
    path.lineTo(stage.at(1, 1.01));
    path.closeSubpath();
    return path;
}

void paintGlitter(SceneStage &stage)
{
    const double u = stage.unit();
    stage.painter.setPen(Qt::NoPen);
    for (int i = 0; i < 260; ++i) {
        const double depth = stage.between(0, 1);
        const double y = horizon + (shore - 0.03 - horizon) * depth * depth;
        const double x = 0.5 + (stage.between(0, 1) - 0.5) * (0.55 + 0.75 * depth);
        const double length = (10 + 70 * depth) * stage.between(0.4, 1) * u;
        stage.painter.setBrush(faded(Qt::white, stage.between(0.15, 0.75)));
        stage.painter.drawRoundedRect(QRectF{stage.at(x, y), QSizeF{length, (1.2 + 2.6 * depth) * u}}, 2 * u,
                                      2 * u);
    }
}

void paintPalms(SceneStage &stage, QPointF crown, double side, double reach)
{
    for (int i = 0; i < 7; ++i) {
        const double turn = 0.12 + 0.22 * i;
        const double own = reach * stage.between(0.75, 1.1);
        const QPointF tip = crown + own * QPointF{side * std::cos(turn), std::sin(turn)};
        const QPainterPath leaf = scenery::palmLeaf(crown, tip, 0.20 * own);
        stage.painter.fillPath(leaf, mixed({0x04, 0x3B, 0x34}, {0x1E, 0x8A, 0x52}, stage.between(0, 1)));
    }
}

} // namespace

ColourPalette SeaScene::palette() const
{
    return {
        {0x03, 0x2B, 0x4A}, {0x1E, 0x8F, 0xD0}, {0xFF, 0xE9, 0xB0}, {0xFF, 0x8A, 0x3D}, {0x20, 0xD6, 0xD2}};
}

void SeaScene::paintFar(SceneStage &stage) const
{
    const QRectF sky{QPointF{}, stage.at(1, horizon)};
    scenery::fillDown(stage, sky,
                      {{0, {0x0E, 0x6F, 0xD6}}, {0.55, {0x5C, 0xC0, 0xF2}}, {1, {0xFF, 0xE8, 0xC0}}});
    const QRectF sea{stage.at(0, horizon), stage.at(1, 1)};
    scenery::fillDown(stage, sea,
                      {{0, {0x0B, 0x7F, 0xC4}},
                       {0.35, {0x12, 0xB2, 0xCE}},
                       {0.6, {0x7C, 0xE6, 0xDC}},
                       {1, {0xA8, 0xF0, 0xE2}}});
    const double reach = std::max(stage.width(), stage.height());
    lightEffects::glow(stage.painter, stage.at(0.5, 0.30), 0.40 * reach, {0xFF, 0xF1, 0xC4}, 0.55);
    stage.painter.setPen(Qt::NoPen);
    paintCloud(stage, stage.at(0.22, 0.24), 560 * stage.unit());
    paintCloud(stage, stage.at(0.60, 0.40), 420 * stage.unit());
    paintCloud(stage, stage.at(0.92, 0.20), 620 * stage.unit());
    paintCloud(stage, stage.at(0.05, 0.46), 380 * stage.unit());
}

void SeaScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    const QPointF sun = stage.at(0.5, 0.28);
    lightEffects::glow(stage.painter, sun, 260 * u, {0xFF, 0xF1, 0xC4}, 0.8);
    stage.painter.setPen(Qt::NoPen);
    stage.painter.setBrush(QColor{0xFF, 0xFB, 0xE8});
    stage.painter.drawEllipse(sun, 58 * u, 58 * u);
    paintGlitter(stage);
    stage.painter.fillPath(shoreLine(stage, shore - 0.012), faded(Qt::white, 0.45));
    stage.painter.fillPath(shoreLine(stage, shore), faded(Qt::white, 0.9));
    QLinearGradient sand{stage.at(0, shore), stage.at(0, 1)};
    sand.setColorAt(0, QColor{0xE8, 0xC8, 0x8E});
    sand.setColorAt(0.25, QColor{0xF8, 0xDF, 0xAA});
    sand.setColorAt(1, QColor{0xE6, 0xB8, 0x72});
    stage.painter.fillPath(shoreLine(stage, shore + 0.016), sand);
    paintPalms(stage, stage.at(-0.02, -0.06), 1, 640 * u);
    paintPalms(stage, stage.at(1.02, -0.08), -1, 560 * u);
    lightEffects::bokeh(stage, {QPointF{}, stage.size}, 18, 30 * u, 120 * u, {0xFF, 0xF3, 0xD0}, 0.16);
}

void SeaScene::paintLight(SceneStage &stage) const
{
    lightEffects::rays(stage, stage.at(0.5, 0.28), 0.9 * std::max(stage.width(), stage.height()), 17,
                       {0xFF, 0xF1, 0xC4}, 0.20);
}

} // namespace quilmora
