#include "local_service/scenes/SpaceScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>

namespace quilmora
{
namespace
{

void paintPlanet(SceneStage &stage, QPointF centre, double radius, const QColor &colour)
{
    QPainter &painter = stage.painter;
    lightEffects::glow(painter, centre, radius * 1.9, colour, 0.35);
    QPainterPath disc;
    disc.addEllipse(centre, radius, radius);
    QRadialGradient body{centre - QPointF{radius * 0.45, radius * 0.45}, radius * 1.6};
    body.setColorAt(0, mixed(colour, Qt::white, 0.55));
    body.setColorAt(0.45, colour);
    body.setColorAt(1, mixed(colour, Qt::black, 0.85));
    painter.fillPath(disc, body);
    painter.save();
    painter.setClipPath(disc);
    painter.translate(centre);
    painter.rotate(-18);
    for (int i = 0; i < 7; ++i) {
        const double y = stage.between(-0.9, 0.8) * radius;
        painter.fillRect(QRectF{-radius, y, 2 * radius, stage.between(0.04, 0.16) * radius},
                         faded(mixed(colour, Qt::white, stage.between(0, 0.6)), 0.18));
    }
    painter.restore();
}

/// The half of the ring in front (below the planet's middle) or behind it.
void paintRingHalf(SceneStage &stage, QPointF centre, double radius, const QColor &colour, bool front)
{
    stage.painter.save();
    stage.painter.translate(centre);
    stage.painter.rotate(-18);
    stage.painter.setBrush(Qt::NoBrush);
    for (int i = 0; i < 5; ++i) {
        const double reach = radius * (1.45 + 0.13 * i);
        const QRectF oval{-reach, -reach * 0.24, 2 * reach, 2 * reach * 0.24};
        stage.painter.setPen(QPen{faded(mixed(colour, Qt::white, 0.5), 0.75 - 0.12 * i), radius * 0.085,
                                  Qt::SolidLine, Qt::FlatCap});
        stage.painter.drawArc(oval, (front ? 180 : 0) * 16, 180 * 16);
    }
    stage.painter.restore();
}

/// The rim of a world below, lit by a sun behind it.
void paintHorizon(SceneStage &stage)
{
    const double radius = 1.7 * std::max(stage.width(), stage.height());
    const QPointF centre{0.40 * stage.width(), 0.86 * stage.height() + radius};
    QRadialGradient air{centre, radius * 1.06};
    air.setColorAt(0.90, faded(stage.palette.accent, 0));
    air.setColorAt(0.943, faded(mixed(stage.palette.accent, Qt::white, 0.4), 0.85));
    air.setColorAt(0.96, faded(stage.palette.accent, 0.35));
    air.setColorAt(1, faded(stage.palette.accent, 0));
    stage.painter.setPen(Qt::NoPen);
    stage.painter.setBrush(air);
    stage.painter.drawEllipse(centre, radius * 1.06, radius * 1.06);
    QRadialGradient ground{centre, radius};
    ground.setColorAt(0.86, QColor{0x02, 0x06, 0x18});
    ground.setColorAt(0.97, QColor{0x06, 0x1E, 0x4A});
    ground.setColorAt(0.995, QColor{0x2A, 0x8C, 0xE0});
    ground.setColorAt(1, QColor{0xD8, 0xF4, 0xFF});
    stage.painter.setBrush(ground);
    stage.painter.drawEllipse(centre, radius, radius);
    lightEffects::glow(stage.painter, stage.at(0.44, 0.86), 0.30 * stage.width(), Qt::white, 0.75);
}

void paintShootingStar(SceneStage &stage, QPointF head, double length)
{
    const QPointF tail = head + QPointF{length, -0.42 * length};
    QLinearGradient fade{head, tail};
    fade.setColorAt(0, faded(Qt::white, 0.95));
    fade.setColorAt(1, faded(Qt::white, 0));
    stage.painter.setPen(QPen{fade, 3.5 * stage.unit(), Qt::SolidLine, Qt::RoundCap});
    stage.painter.drawLine(head, tail);
    lightEffects::glow(stage.painter, head, 26 * stage.unit(), Qt::white, 0.9);
}

} // namespace

ColourPalette SpaceScene::palette() const
{
    return {
        {0x04, 0x04, 0x16}, {0x1E, 0x14, 0x55}, {0xC8, 0x9A, 0xFF}, {0x4C, 0xB8, 0xFF}, {0xE0, 0x5C, 0xFF}};
}

void SpaceScene::paintFar(SceneStage &stage) const
{
    const QRectF whole{QPointF{}, stage.size};
    scenery::fillDown(stage, whole,
                      {{0, {0x07, 0x06, 0x24}}, {0.55, {0x16, 0x0F, 0x45}}, {1, stage.palette.deep}});
    const double reach = std::max(stage.width(), stage.height());
    for (int i = 0; i < 46; ++i) {
        const double along = stage.between(-0.1, 1.1);
        const double spread = stage.between(-0.22, 0.22);
        const QPointF cloud = stage.at(along, 0.78 - 0.62 * along + spread);
        const QColor colour = i % 3 == 0   ? stage.palette.accent2
                              : i % 3 == 1 ? stage.palette.accent
                                           : QColor{0x5A, 0x3D, 0xE0};
        lightEffects::glow(stage.painter, cloud, stage.between(0.06, 0.22) * reach, colour,
                           stage.between(0.08, 0.26));
    }
    lightEffects::glow(stage.painter, stage.focus, 0.40 * reach, stage.palette.accent2, 0.40);
}

void SpaceScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    const QRectF whole{QPointF{}, stage.size};
    lightEffects::dust(stage, whole, 620, 5.5 * u, {0xE6, 0xEC, 0xFF});
    lightEffects::sparkles(stage, whole, 14, 34 * u, {0xDD, 0xE8, 0xFF});
    paintShootingStar(stage, stage.at(0.30, 0.13), 260 * u);
    paintShootingStar(stage, stage.at(0.62, 0.07), 170 * u);
    const QPointF planet = stage.width() > stage.height() ? stage.at(0.51, 0.17) : stage.at(0.86, 0.40);
    const QColor amber{0xF0, 0x8A, 0x4A};
    paintRingHalf(stage, planet, 96 * u, amber, false);
    paintPlanet(stage, planet, 96 * u, amber);
    paintRingHalf(stage, planet, 96 * u, amber, true);
    paintPlanet(stage, stage.at(0.93, 0.09), 42 * u, {0x6A, 0xD0, 0xC8});
    paintHorizon(stage);
}

} // namespace quilmora
