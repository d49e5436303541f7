#include "local_service/scenes/CalmScene.h"

#include "local_service/scenes/LightEffects.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quilmora
{
namespace
{

constexpr int ribbons = 4;

/// A band that swings across the whole width, filled down to the lower edge.
QPainterPath ribbon(const SceneStage &stage, double level, double swing, double phase)
{
    constexpr int steps = 48;
    QPainterPath path;
    for (int i = 0; i <= steps; ++i) {
        const double share = double(i) / steps;
        const double angle = 2 * std::numbers::pi * (share * 0.9 + phase);
        const double y = level + swing * (std::sin(angle) + 0.35 * std::sin(2.3 * angle + 1)) - 0.10 * share;
        const QPointF point = stage.at(share, y);
        i == 0 ? path.moveTo(point) : path.lineTo(point);
    }
    return path;
}

void paintDots(SceneStage &stage, const QRectF &area)
{
    const double step = 26 * stage.unit();
    stage.painter.setPen(Qt::NoPen);
    const int columns = static_cast<int>(area.width() / step);
    const int rows = static_cast<int>(area.height() / step);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            stage.painter.setBrush(faded(Qt::white, 0.42 * (1 - double(column) / columns)));
            const QPointF dot = area.topLeft() + step * QPointF(column, row);
            stage.painter.drawEllipse(dot, 3 * stage.unit(), 3 * stage.unit());
        }
    }
}

} // namespace

ColourPalette CalmScene::palette() const
{
    const auto tone = [this](int turn, int saturation, int value) {
        return QColor::fromHsv((m_hue + turn + 360) % 360, saturation, value);
    };
    return {tone(15, 215, 46), tone(0, 190, 138), tone(-25, 130, 255), tone(160, 200, 255),
            tone(-40, 190, 255)};
}

void CalmScene::paintFar(SceneStage &stage) const
{
    QLinearGradient ground{stage.at(0, 0), stage.at(1, 1)};
    ground.setColorAt(0, stage.palette.base);
    ground.setColorAt(0.55, mixed(stage.palette.base, stage.palette.deep, 0.55));
    ground.setColorAt(1, stage.palette.deep);
    stage.painter.fillRect(QRectF{QPointF{}, stage.size}, ground);
    const double reach = std::max(stage.width(), stage.height());
    lightEffects::glow(stage.painter, stage.at(0.08, 0.05), reach * 0.6, stage.palette.glow, 0.75);
    lightEffects::glow(stage.painter, stage.focus, reach * 0.5, stage.palette.accent2, 0.8);
    lightEffects::glow(stage.painter, stage.at(0.35, 1.05), reach * 0.45, stage.palette.accent, 0.5);
}

void CalmScene::paintNear(SceneStage &stage) const
{
    for (int i = 0; i < ribbons; ++i) {
        const QPainterPath edge = ribbon(stage, 0.70 + 0.085 * i, 0.05, 0.21 * i + 0.1);
        QPainterPath body = edge;
        body.lineTo(stage.at(1, 1.05));
        body.lineTo(stage.at(0, 1.05));
        QLinearGradient fill{stage.at(0, 0.6), stage.at(1, 1)};
        const QColor first = i % 2 == 0 ? stage.palette.accent2 : stage.palette.glow;
        fill.setColorAt(0, faded(first, 0.22));
        fill.setColorAt(0.6, faded(stage.palette.base, 0.45));
        fill.setColorAt(1, faded(first, 0.50));
        stage.painter.fillPath(body, fill);
        stage.painter.strokePath(edge, QPen{faded(mixed(first, Qt::white, 0.5), 0.45), 2.5 * stage.unit()});
    }
    paintDots(stage, {stage.at(0.04, 0.06), QSizeF{260 * stage.unit(), 130 * stage.unit()}});
    lightEffects::dust(stage, {QPointF{}, stage.size}, 90, 9 * stage.unit(), stage.palette.glow);
    lightEffects::bokeh(stage, {QPointF{}, stage.size}, 18, 14 * stage.unit(), 60 * stage.unit(),
                        stage.palette.glow, 0.14);
}

void CalmScene::paintLight(SceneStage &stage) const
{
    lightEffects::rays(stage, stage.focus, std::max(stage.width(), stage.height()), 14, stage.palette.glow,
                       0.22);
}

} // namespace quilmora
