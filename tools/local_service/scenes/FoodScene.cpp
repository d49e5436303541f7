#include "local_service/scenes/FoodScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <array>

namespace quilmora
{
namespace
{

constexpr double table = 0.74;

void paintPlanks(SceneStage &stage)
{
    const QRectF area{stage.at(0, table), stage.at(1, 1)};
    scenery::fillDown(stage, area,
                      {{0, {0xB8, 0x6E, 0x36}}, {0.4, {0x86, 0x48, 0x20}}, {1, {0x3A, 0x1A, 0x0A}}});
    const double u = stage.unit();
    for (int i = -9; i <= 9; ++i) {
        const QPointF top{stage.width() * (0.5 + i * 0.065), area.top()};
        const QPointF bottom{stage.width() * (0.5 + i * 0.16), area.bottom()};
        stage.painter.setPen(QPen{faded({0x2A, 0x10, 0x05}, 0.55), 4 * u});
        stage.painter.drawLine(top, bottom);
    }
    scenery::fillAcross(stage, {area.left(), area.top() - 3 * u, area.width(), 6 * u},
                        {{0, faded({0xFF, 0xD8, 0xA0}, 0.2)},
                         {0.5, faded({0xFF, 0xE4, 0xB8}, 0.9)},
                         {1, faded({0xFF, 0xD8, 0xA0}, 0.2)}});
}

void paintIngredients(SceneStage &stage, QPointF centre, double radius)
{
    static const std::array<QColor, 6> colours{QColor{0x4E, 0xB8, 0x3A}, QColor{0xFF, 0xE2, 0x8A},
                                               QColor{0xE8, 0x3A, 0x20}, QColor{0xFF, 0xF6, 0xE2},
                                               QColor{0xF2, 0x9A, 0x3A}, QColor{0x8A, 0x3E, 0x22}};
    stage.painter.setPen(QPen{faded(Qt::black, 0.22), 2 * stage.unit()});
    for (int i = 0; i < 46; ++i) {
        const double angle = stage.between(0, 6.283);
        const double away = radius * 0.80 * std::sqrt(stage.between(0, 1));
        const QPointF spot = centre + QPointF{away * std::cos(angle), away * std::sin(angle) * 0.30};
        const double size = radius * stage.between(0.06, 0.13);
        const QColor colour = colours[static_cast<std::size_t>(i) % colours.size()];
        QRadialGradient fill{spot - QPointF{size * 0.3, size * 0.3}, size * 1.5};
        fill.setColorAt(0, mixed(colour, Qt::white, 0.45));
        fill.setColorAt(1, colour.darker(120));
        stage.painter.setBrush(fill);
        stage.painter.drawEllipse(spot, size, size * 0.62);
    }
}

void paintBowl(SceneStage &stage, QPointF centre, double radius)
{
    QPainter &painter = stage.painter;
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(Qt::black, 0.40));
    painter.drawEllipse(centre + QPointF{0, 0.72 * radius}, 0.95 * radius, 0.16 * radius);
    QPainterPath body{centre - QPointF{radius, 0}};
    body.cubicTo(centre + QPointF{-0.95 * radius, 0.72 * radius},
                 centre + QPointF{-0.45 * radius, 0.80 * radius}, centre + QPointF{0, 0.80 * radius});
    body.cubicTo(centre + QPointF{0.45 * radius, 0.80 * radius},
                 centre + QPointF{0.95 * radius, 0.72 * radius}, centre + QPointF{radius, 0});
    body.closeSubpath();
    QLinearGradient glaze{centre - QPointF{radius, 0}, centre + QPointF{radius, 0}};
    glaze.setColorAt(0, QColor{0x7A, 0x0E, 0x10});
    glaze.setColorAt(0.3, QColor{0xE2, 0x34, 0x2A});
    glaze.setColorAt(0.42, QColor{0xFF, 0x7A, 0x60});
    glaze.setColorAt(0.6, QColor{0xC8, 0x1E, 0x1E});
    glaze.setColorAt(1, QColor{0x5A, 0x08, 0x0C});
    painter.fillPath(body, glaze);
    painter.setBrush(QColor{0xFF, 0xD0, 0x7A});
    painter.drawEllipse(centre, radius, 0.33 * radius);
    QRadialGradient soup{centre, radius};
    soup.setColorAt(0, QColor{0xE8, 0x5A, 0x1E});
    soup.setColorAt(1, QColor{0x9A, 0x22, 0x0C});
    painter.setBrush(soup);
    painter.drawEllipse(centre + QPointF{0, 0.02 * radius}, 0.94 * radius, 0.29 * radius);
    paintIngredients(stage, centre, radius);
}

void paintChopsticks(SceneStage &stage, QPointF tip, double length)
{
    for (const double turn : {0.0, 0.07}) {
        const QPointF end = tip + length * QPointF{0.86 + turn, -0.50 + turn};
        QLinearGradient wood{tip, end};
        wood.setColorAt(0, QColor{0xE8, 0xB8, 0x70});
        wood.setColorAt(0.7, QColor{0x8A, 0x42, 0x1A});
        wood.setColorAt(1, QColor{0xFF, 0xD0, 0x60});
        stage.painter.setPen(QPen{wood, 14 * stage.unit(), Qt::SolidLine, Qt::RoundCap});
        stage.painter.drawLine(tip, end);
    }
}

QPointF bowlPlace(const SceneStage &stage)
{
    return stage.width() > stage.height() ? stage.at(0.44, 0.885) : stage.at(0.20, 0.91);
}

} // namespace

ColourPalette FoodScene::palette() const
{
    return {
        {0x2A, 0x0A, 0x04}, {0x8E, 0x2E, 0x10}, {0xFF, 0xC0, 0x6A}, {0xFF, 0x6A, 0x2A}, {0xFF, 0xC4, 0x2E}};
}

void FoodScene::paintFar(SceneStage &stage) const
{
    const double u = stage.unit();
    scenery::fillDown(stage, {QPointF{}, stage.size},
                      {{0, {0x3A, 0x0E, 0x06}},
                       {0.5, stage.palette.base},
                       {0.75, {0xC8, 0x5A, 0x1E}},
                       {1, stage.palette.deep}});
    lightEffects::glow(stage.painter, stage.focus, 0.5 * std::max(stage.width(), stage.height()),
                       stage.palette.glow, 0.6);
    const QRectF hall{QPointF{}, stage.at(1, table)};
    lightEffects::bokeh(stage, hall, 42, 60 * u, 190 * u, {0xFF, 0xA8, 0x4A}, 0.40);
    lightEffects::bokeh(stage, hall, 16, 50 * u, 140 * u, {0xFF, 0x5A, 0x3A}, 0.45);
    paintPlanks(stage);
    // Steam.
    const QPointF bowl = bowlPlace(stage);
    for (int i = 0; i < 30; ++i) {
        const QPointF puff = bowl + QPointF{stage.between(-150, 150) * u, -stage.between(60, 460) * u};
        lightEffects::glow(stage.painter, puff, stage.between(60, 130) * u, {0xFF, 0xF0, 0xE0}, 0.10);
    }
}

void FoodScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    const QPointF bowl = bowlPlace(stage);
    paintBowl(stage, bowl, 250 * u);
    paintChopsticks(stage, bowl + QPointF{60 * u, -20 * u}, 420 * u);
    lightEffects::dust(stage, {QPointF{}, stage.size}, 110, 9 * u, {0xFF, 0xC8, 0x7A});
    lightEffects::sparkles(stage, {stage.at(0.1, 0.1), stage.at(0.9, 0.9)}, 7, 34 * u, {0xFF, 0xEC, 0xC0});
}

} // namespace quilmora
