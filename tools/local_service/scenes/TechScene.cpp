#include "local_service/scenes/TechScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quilmora
{
namespace
{

constexpr double horizon = 0.70;

/// A line of light: a broad faint stroke under a thin bright one.
void paintNeon(QPainter &painter, const QPainterPath &path, const QColor &colour, double width,
               double strength)
{
    painter.strokePath(path, QPen{faded(colour, 0.16 * strength), width * 7, Qt::SolidLine, Qt::RoundCap});
    painter.strokePath(path, QPen{faded(colour, 0.30 * strength), width * 3, Qt::SolidLine, Qt::RoundCap});
    painter.strokePath(path, QPen{faded(mixed(colour, Qt::white, 0.35), 0.9 * strength), width});
}

void paintGrid(SceneStage &stage)
{
    const double top = horizon * stage.height();
    const double depth = stage.height() - top;
    const double vanishing = 0.5 * stage.width();
    const double u = stage.unit();
    for (int i = 1; i <= 13; ++i) {
        const double share = std::pow(i / 13.0, 2.1);
        QPainterPath line{{0, top + depth * share}};
        line.lineTo(stage.width(), top + depth * share);
        paintNeon(stage.painter, line, stage.palette.accent, (0.8 + 2.2 * share) * u, 0.25 + 0.65 * share);
    }
    const double step = 0.13 * std::max(stage.width(), stage.height());
    for (int i = -22; i <= 22; ++i) {
        QPainterPath line{{vanishing + i * step * 0.16, top}};
        line.lineTo(vanishing + i * step * 1.4, stage.height());
        paintNeon(stage.painter, line, stage.palette.accent, 1.6 * u, 0.55);
    }
    QPainterPath edge{{0, top}};
    edge.lineTo(stage.width(), top);
    paintNeon(stage.painter, edge, mixed(stage.palette.accent2, Qt::white, 0.4), 4 * u, 1);
}

QPainterPath hexagon(QPointF centre, double radius)
{
    QPainterPath path;
    for (int i = 0; i < 6; ++i) {
        const double angle = (i + 0.5) * std::numbers::pi / 3;
        const QPointF corner = centre + radius * QPointF{std::cos(angle), std::sin(angle)};
        i == 0 ? path.moveTo(corner) : path.lineTo(corner);
    }
    path.closeSubpath();
    return path;
}

void paintHexagons(SceneStage &stage, QPointF origin, int columns, int rows)
{
    const double radius = 52 * stage.unit();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const double strength = stage.between(-0.35, 1) * (1 - double(row) / rows);
            if (strength <= 0) {
                continue;
            }
            const double shift = row % 2 == 0 ? 0 : radius * 0.87;
            const QPainterPath cell =
                hexagon(origin + QPointF{column * radius * 1.74 + shift, row * radius * 1.51}, radius * 0.94);
            stage.painter.fillPath(cell, faded(stage.palette.accent, 0.13 * strength));
            stage.painter.strokePath(cell,
                                     QPen{faded(stage.palette.accent, 0.55 * strength), 1.6 * stage.unit()});
        }
    }
}

/// A conductor from `start` that runs along, bends by 45 degrees, and ends in a pad.
void paintTrace(SceneStage &stage, QPointF start, double direction)
{
    const double u = stage.unit();
    const double along = stage.between(120, 380) * u;
    const double aside = stage.between(-110, 110) * u;
    const QPointF bend = start + QPointF{direction * along, 0};
    const QPointF second = bend + QPointF{direction * std::abs(aside), aside};
    const QPointF pad = second + QPointF{direction * stage.between(40, 220) * u, 0};
    QPainterPath path{start};
    path.lineTo(bend);
    path.lineTo(second);
    path.lineTo(pad);
    paintNeon(stage.painter, path, stage.palette.accent, 2 * u, 0.55);
    lightEffects::glow(stage.painter, pad, 26 * u, stage.palette.accent, 0.8);
    stage.painter.setPen(Qt::NoPen);
    stage.painter.setBrush(Qt::white);
    stage.painter.drawEllipse(pad, 5 * u, 5 * u);
}

void paintFallingData(SceneStage &stage)
{
    const double u = stage.unit();
    for (int i = 0; i < 34; ++i) {
        const double x = stage.between(0, stage.width());
        const double top = stage.between(-0.1, 0.4) * stage.height();
        const double length = stage.between(0.08, 0.30) * stage.height();
        QLinearGradient fade{x, top, x, top + length};
        const QColor colour = i % 3 == 0 ? stage.palette.accent2 : stage.palette.accent;
        fade.setColorAt(0, faded(colour, 0));
        fade.setColorAt(1, faded(colour, 0.55));
        stage.painter.fillRect(QRectF{x, top, 2.2 * u, length}, fade);
        lightEffects::glow(stage.painter, {x + u, top + length}, 14 * u, colour, 0.9);
    }
}

} // namespace

ColourPalette TechScene::palette() const
{
    return {
        {0x05, 0x06, 0x1E}, {0x1B, 0x17, 0x5E}, {0x7A, 0x8C, 0xFF}, {0x1F, 0xE5, 0xFF}, {0xFF, 0x3D, 0xC8}};
}

void TechScene::paintFar(SceneStage &stage) const
{
    const QRectF whole{QPointF{}, stage.size};
    scenery::fillDown(stage, whole,
                      {{0, stage.palette.deep},
                       {0.45, stage.palette.base},
                       {horizon, mixed(stage.palette.base, stage.palette.accent2, 0.55)},
                       {horizon + 0.001, mixed(stage.palette.deep, stage.palette.base, 0.5)},
                       {1, stage.palette.deep}});
    const double reach = std::max(stage.width(), stage.height());
    lightEffects::glow(stage.painter, stage.at(0.5, horizon), 0.42 * reach, stage.palette.accent2, 0.75);
    lightEffects::glow(stage.painter, stage.focus, 0.40 * reach, stage.palette.accent, 0.45);
    lightEffects::glow(stage.painter, stage.at(0.02, 0.1), 0.40 * reach, {0x6A, 0x3D, 0xFF}, 0.55);
    const double u = stage.unit();
    const QRectF towers{stage.at(0, horizon - 0.27), stage.at(1, horizon)};
    scenery::skyline(stage, towers, {46 * u, 92 * u, {0x1A, 0x10, 0x52}, stage.palette.accent, 0.30});
    const QRectF nearTowers{stage.at(0, horizon - 0.14), stage.at(1, horizon)};
    scenery::skyline(stage, nearTowers, {60 * u, 120 * u, {0x0B, 0x08, 0x2E}, stage.palette.accent2, 0.26});
}

void TechScene::paintNear(SceneStage &stage) const
{
    stage.painter.setCompositionMode(QPainter::CompositionMode_Plus);
    paintGrid(stage);
    paintFallingData(stage);
    const double u = stage.unit();
    paintHexagons(stage, {20 * u, 10 * u}, 7, 4);
    paintHexagons(stage, {stage.width() - 420 * u, 30 * u}, 5, 4);
    for (int i = 0; i < 7; ++i) {
        paintTrace(stage, {0, stage.between(0.15, 0.65) * stage.height()}, 1);
        paintTrace(stage, {stage.width(), stage.between(0.05, 0.65) * stage.height()}, -1);
    }
    lightEffects::bokeh(stage, {stage.at(0, 0.5), stage.at(1, 1)}, 16, 20 * u, 90 * u, stage.palette.accent2,
                        0.16);
    lightEffects::dust(stage, {QPointF{}, stage.size}, 160, 8 * u, stage.palette.accent);
}

} // namespace quilmora
