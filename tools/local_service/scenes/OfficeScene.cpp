#include "local_service/scenes/OfficeScene.h"

#include "local_service/scenes/LightEffects.h"
#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <array>

namespace quilmora
{
namespace
{

constexpr double ceiling = 0.075;
constexpr double floorLevel = 0.77;

/// The room the windows take of the stage.
QRectF windowArea(const SceneStage &stage)
{
    const bool wide = stage.width() > stage.height();
    return {stage.at(0.03, ceiling), stage.at(wide ? 0.66 : 0.97, wide ? floorLevel : 0.62)};
}

void paintView(SceneStage &stage, const QRectF &area)
{
    scenery::fillDown(stage, area,
                      {{0, {0x17, 0x25, 0x55}},
                       {0.42, {0x6A, 0x45, 0x7A}},
                       {0.72, {0xF0, 0x86, 0x5A}},
                       {1, {0xFF, 0xCE, 0x85}}});
    stage.painter.save();
    stage.painter.setClipRect(area);
    const double u = stage.unit();
    lightEffects::glow(stage.painter, {area.left() + 0.62 * area.width(), area.top() + 0.80 * area.height()},
                       0.55 * area.width(), {0xFF, 0xC0, 0x70}, 0.75);
    QRectF rows = area;
    rows.setTop(area.top() + 0.40 * area.height());
    scenery::skyline(stage, rows, {44 * u, 80 * u, {0x8A, 0x55, 0x72}, {0xFF, 0xDD, 0xA0}, 0.22});
    rows.setTop(area.top() + 0.48 * area.height());
    scenery::skyline(stage, rows, {70 * u, 130 * u, {0x38, 0x26, 0x45}, {0xFF, 0xD0, 0x80}, 0.40});
    stage.painter.restore();
}

void paintFrames(SceneStage &stage, const QRectF &area)
{
    const QColor frame{0x1C, 0x11, 0x0C};
    const double width = 13 * stage.unit();
    const int panes = area.width() > area.height() ? 5 : 3;
    for (int i = 0; i <= panes; ++i) {
        const double x = area.left() + area.width() * i / panes;
        stage.painter.fillRect(QRectF{x - width / 2, area.top(), width, area.height()}, frame);
        stage.painter.fillRect(QRectF{x + width / 2, area.top(), width / 5, area.height()},
                               QColor{0xB9, 0x7C, 0x48});
    }
    const double cross = area.top() + 0.20 * area.height();
    stage.painter.fillRect(QRectF{area.left(), cross, area.width(), width * 0.7}, frame);
}

void paintShelf(SceneStage &stage, const QRectF &area)
{
    static const std::array<QColor, 6> spines{QColor{0xC9, 0x5B, 0x3C}, QColor{0xE9, 0xC4, 0x84},
                                              QColor{0x3F, 0x6B, 0x78}, QColor{0x8A, 0x3B, 0x3B},
                                              QColor{0xD8, 0x9A, 0x4E}, QColor{0x4A, 0x4F, 0x7C}};
    constexpr int boards = 5;
    const double u = stage.unit();
    const double step = area.height() / boards;
    for (int board = 0; board < boards; ++board) {
        const QRectF bay{area.left(), area.top() + step * board, area.width(), step};
        scenery::fillDown(stage, bay,
                          {{0, {0xFF, 0xC2, 0x7A}}, {0.25, {0x9C, 0x62, 0x38}}, {1, {0x4A, 0x2A, 0x1A}}});
        double x = bay.left() + stage.between(10, 60) * u;
        while (x < bay.right() - 20 * u) {
            if (stage.between(0, 1) < 0.16) {
                x += stage.between(40, 110) * u;
                continue;
            }
            const double thickness = stage.between(14, 30) * u;
            const double tall = step * stage.between(0.50, 0.74);
            const auto spine = static_cast<std::size_t>(stage.random.bounded(int(spines.size())));
            stage.painter.fillRect(QRectF{x, bay.bottom() - tall, thickness, tall},
                                   spines[spine].darker(115));
            x += thickness * 1.08;
        }
        stage.painter.fillRect(QRectF{bay.left(), bay.bottom() - 8 * u, bay.width(), 16 * u},
                               QColor{0x2A, 0x17, 0x0E});
    }
}

void paintCeiling(SceneStage &stage)
{
    const QRectF area{QPointF{}, stage.at(1, ceiling)};
    scenery::fillDown(stage, area, {{0, {0x1B, 0x10, 0x0B}}, {1, {0x3A, 0x22, 0x15}}});
    const double u = stage.unit();
    const QColor warm{0xFF, 0xD9, 0x9A};
    stage.painter.fillRect(QRectF{0, area.bottom() - 5 * u, stage.width(), 7 * u}, warm);
    const int lamps = stage.width() > stage.height() ? 7 : 4;
    for (int i = 0; i < lamps; ++i) {
        const QPointF lamp = stage.at((i + 0.5) / lamps, ceiling * 0.5);
        lightEffects::glow(stage.painter, lamp, 170 * u, warm, 0.75);
        stage.painter.setBrush(QColor{0xFF, 0xF4, 0xDC});
        stage.painter.drawEllipse(lamp, 24 * u, 10 * u);
    }
}

void paintFloor(SceneStage &stage, const QRectF &windows)
{
    const QRectF area{QPointF{0, windows.bottom()}, stage.at(1, 1)};
    scenery::fillDown(stage, area,
                      {{0, {0x5A, 0x36, 0x22}}, {0.35, {0x3A, 0x22, 0x16}}, {1, {0x16, 0x0C, 0x08}}});
    const double u = stage.unit();
    for (int i = 0; i < 5; ++i) {
        const double x = windows.left() + windows.width() * (i + 0.5) / 5;
        lightEffects::glow(stage.painter, {x, windows.bottom() + 20 * u}, 220 * u, {0xFF, 0x9A, 0x55}, 0.35);
    }
}

/// A potted plant: leaves that fan out from `foot`.
void paintPlant(SceneStage &stage, QPointF foot, double height)
{
    for (int i = 0; i < 11; ++i) {
        const double away = (i - 5) / 5.0;
        const QPointF tip = foot + QPointF{away * 0.55 * height,
                                           -height * stage.between(0.65, 1.05) * (1 - 0.35 * away * away)};
        const QPointF side{0.055 * height, 0};
        QPainterPath leaf{foot};
        leaf.quadTo((foot + tip) / 2 - side - QPointF{0, 0.15 * height}, tip);
        leaf.quadTo((foot + tip) / 2 + side - QPointF{0, 0.05 * height}, foot);
        stage.painter.fillPath(leaf, mixed({0x1E, 0x3A, 0x24}, {0x5E, 0x8A, 0x4A}, stage.between(0, 0.8)));
    }
    QPainterPath pot{foot - QPointF{0.15 * height, 0.03 * height}};
    pot.lineTo(foot + QPointF{0.15 * height, -0.03 * height});
    pot.lineTo(foot + QPointF{0.11 * height, 0.30 * height});
    pot.lineTo(foot + QPointF{-0.11 * height, 0.30 * height});
    QLinearGradient clay{foot - QPointF{0.15 * height, 0}, foot + QPointF{0.15 * height, 0}};
    clay.setColorAt(0, QColor{0x2A, 0x22, 0x20});
    clay.setColorAt(0.4, QColor{0x6A, 0x58, 0x4E});
    clay.setColorAt(1, QColor{0x1C, 0x16, 0x14});
    stage.painter.fillPath(pot, clay);
}

} // namespace

ColourPalette OfficeScene::palette() const
{
    return {
        {0x1A, 0x0E, 0x08}, {0x6B, 0x42, 0x26}, {0xFF, 0xC8, 0x7A}, {0xFF, 0xB2, 0x3E}, {0xFF, 0x6A, 0x3D}};
}

void OfficeScene::paintFar(SceneStage &stage) const
{
    stage.painter.setPen(Qt::NoPen);
    const QRectF whole{QPointF{}, stage.size};
    scenery::fillAcross(stage, whole, {{0, {0x3A, 0x22, 0x16}}, {1, stage.palette.base}});
    const QRectF windows = windowArea(stage);
    paintView(stage, windows);
    paintFrames(stage, windows);
    if (windows.right() < 0.9 * stage.width()) {
        paintShelf(stage,
                   {QPointF{0.70 * stage.width(), 0.13 * stage.height()}, stage.at(0.985, floorLevel)});
    }
    paintFloor(stage, windows);
    paintPlant(stage, {0.645 * stage.width(), windows.bottom() + 40 * stage.unit()}, 330 * stage.unit());
    paintCeiling(stage);
    lightEffects::glow(stage.painter, stage.focus, 0.75 * stage.height(), stage.palette.glow, 0.38);
}

void OfficeScene::paintNear(SceneStage &stage) const
{
    const double u = stage.unit();
    const QRectF desk{stage.at(0, 0.925), stage.at(1, 1.0)};
    scenery::fillDown(stage, desk,
                      {{0, {0x7A, 0x49, 0x2A}}, {0.12, {0x4A, 0x2A, 0x18}}, {1, {0x1A, 0x0D, 0x07}}});
    scenery::fillAcross(stage, {desk.left(), desk.top() - 3 * u, desk.width(), 4 * u},
                        {{0, faded(stage.palette.glow, 0.25)},
                         {0.45, faded({0xFF, 0xE9, 0xC4}, 0.95)},
                         {1, faded(stage.palette.glow, 0.25)}});
    lightEffects::bokeh(stage, {QPointF{}, stage.size}, 26, 24 * u, 110 * u, {0xFF, 0xC8, 0x7A}, 0.16);
    lightEffects::dust(stage, {QPointF{}, stage.size}, 120, 7 * u, {0xFF, 0xE3, 0xB0});
}

void OfficeScene::paintLight(SceneStage &stage) const
{
    lightEffects::rays(stage, stage.focus, 1.0 * stage.width(), 15, stage.palette.glow, 0.30);
}

} // namespace quilmora
