#include "local_service/scenes/WealthScene.h"

#include "local_service/cover/TitleFont.h"
#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

const QColor brightGold{0xFF, 0xF0, 0xA8};
const QColor gold{0xFF, 0xC8, 0x3A};
const QColor darkGold{0xA8, 0x66, 0x08};

/// A coin of `radius`, seen at a slant (`open` from 0, on edge, to 1, full face) and turned by `degrees`.
void paintCoin(QPainter &painter, QPointF centre, double radius, double open, double degrees)
{
    painter.save();
    painter.translate(centre);
    painter.rotate(degrees);
    painter.scale(1, open);
    painter.setPen(Qt::NoPen);
    const double thickness = 0.20 * radius * (1 - open) / open + 0.04 * radius;
    painter.setBrush(darkGold.darker(140));
    painter.drawEllipse(QPointF{0, thickness}, radius, radius);
    painter.fillRect(QRectF{-radius, 0, 2 * radius, thickness}, darkGold.darker(115));
    QLinearGradient face{-radius, -radius, radius, radius};
    face.setColorAt(0, brightGold);
    face.setColorAt(0.4, gold);
    face.setColorAt(0.55, brightGold);
    face.setColorAt(1, QColor{0xD8, 0x8A, 0x10});
    painter.setBrush(face);
    painter.drawEllipse(QPointF{}, radius, radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen{faded(darkGold, 0.8), 0.05 * radius});
    painter.drawEllipse(QPointF{}, 0.80 * radius, 0.80 * radius);
    QPainterPath sign = titleFont::outline(u"¥"_s, 1.15 * radius);
    sign.translate(-sign.boundingRect().center());
    painter.fillPath(sign.translated(0.03 * radius, 0.03 * radius), brightGold);
    painter.fillPath(sign, darkGold);
    painter.restore();
}

void paintFlyingCoins(SceneStage &stage, int count, double smallest, double largest)
{
    for (int i = 0; i < count; ++i) {
        const QPointF centre = stage.at(stage.between(0, 1), stage.between(0, 1));
        const double radius = stage.between(smallest, largest);
        paintCoin(stage.painter, centre, radius, stage.between(0.35, 0.95), stage.between(-50, 50));
    }
}

void paintStack(SceneStage &stage, QPointF foot, int coins, double radius)
{
    for (int i = 0; i < coins; ++i) {
        const QPointF centre = foot + QPointF{stage.between(-0.06, 0.06) * radius, -0.30 * radius * i};
        paintCoin(stage.painter, centre, radius, 0.42, 0);
    }
}

} // namespace

ColourPalette WealthScene::palette() const
{
    return {
        {0x24, 0x0C, 0x02}, {0x8A, 0x4A, 0x08}, {0xFF, 0xD6, 0x6A}, {0xFF, 0xCB, 0x2E}, {0xFF, 0x4E, 0x2E}};
}

void WealthScene::paintFar(SceneStage &stage) const
{
    const QRectF whole{QPointF{}, stage.size};
    scenery::fillDown(stage, whole,
                      {{0, {0x4A, 0x16, 0x06}},
                       {0.5, mixed(stage.palette.base, {0xA0, 0x1E, 0x0A}, 0.35)},
                       {1, stage.palette.deep}});
    const double reach = std::max(stage.width(), stage.height());
    lightEffects::glow(stage.painter, stage.focus, 0.75 * reach, stage.palette.glow, 0.85);
    lightEffects::glow(stage.painter, stage.at(0.15, 0.95), 0.45 * reach, {0xFF, 0x8A, 0x1E}, 0.45);
    paintFlyingCoins(stage, 16, 26 * stage.unit(), 70 * stage.unit());
}

void WealthScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    lightEffects::rays(stage, stage.focus, 1.25 * std::max(stage.width(), stage.height()), 26,
                       stage.palette.glow, 0.42);
    const QRectF whole{QPointF{}, stage.size};
    lightEffects::bokeh(stage, whole, 34, 20 * u, 120 * u, gold, 0.20);
    paintFlyingCoins(stage, 9, 34 * u, 62 * u);
    const int stacks = stage.width() > stage.height() ? 5 : 3;
    for (int i = 0; i < stacks; ++i) {
        paintStack(stage, stage.at(0.06 + 0.11 * i, 1.0), 2 + (i * 2 + 1) % 4, 84 * u);
    }
    lightEffects::sparkles(stage, whole, 16, 46 * u, brightGold);
    lightEffects::dust(stage, whole, 160, 8 * u, brightGold);
}

} // namespace quilmora
