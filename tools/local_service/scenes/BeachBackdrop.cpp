#include "local_service/scenes/Backdrop.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace quilmora::localservice {
namespace {

constexpr double horizon = 0.56;
constexpr double shore = 0.80;
const QColor sunlight{0xFF, 0xF1, 0xC4};

QPainterPath shoreLine(const Canvas &canvas, double level)
{
    QPainterPath path{canvas.at(0, 1.01)};
    for (int i = 0; i <= 60; ++i) {
        const double x = i / 60.0;
        path.lineTo(
            canvas.at(x, level + 0.020 * std::sin(7 * x + 0.6) + 0.008 * std::sin(19 * x) - 0.05 * x));
    }
    path.lineTo(canvas.at(1, 1.01));
    return path;
}

void paintGlitter(Canvas &canvas)
{
    const double u = canvas.unit();
    for (int i = 0; i < 260; ++i) {
        const double depth = canvas.between(0, 1);
        const double y = horizon + (shore - 0.03 - horizon) * depth * depth;
        const double x = 0.5 + (canvas.between(0, 1) - 0.5) * (0.55 + 0.75 * depth);
        const double length = (10 + 70 * depth) * canvas.between(0.4, 1) * u;
        canvas.painter.setBrush(faded(Qt::white, canvas.between(0.15, 0.75)));
        canvas.painter.drawRoundedRect(QRectF{canvas.at(x, y), QSizeF{length, (1.2 + 2.6 * depth) * u}},
                                       2 * u, 2 * u);
    }
}

/// A leaf that begins at `root` and bends down to `tip`.
QPainterPath palmLeaf(QPointF root, QPointF tip)
{
    constexpr int leaflets = 52;
    const double reach = std::hypot(tip.x() - root.x(), tip.y() - root.y());
    const double breadth = 0.20 * reach;
    QPainterPath spine{root};
    spine.quadTo((root + tip) / 2 - QPointF{0, 0.28 * reach}, tip);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (int i = 0; i < leaflets; ++i) {
        const double share = double(i + 1) / leaflets;
        const QPointF from = spine.pointAtPercent(share * 0.97);
        const double side = i % 2 == 0 ? -1 : 1;
        const double angle =
            side * (1.15 - 0.55 * share) - spine.angleAtPercent(share * 0.97) * std::numbers::pi / 180;
        const double length = breadth * (0.12 + std::sin(std::numbers::pi * (0.18 + 0.78 * share)));
        const QPointF away = length * QPointF{std::cos(angle), std::sin(angle)};
        const QPointF across = breadth * QPointF{-std::sin(angle), std::cos(angle)};
        path.moveTo(from - across * 0.03);
        path.quadTo(from + 0.5 * away + across * 0.07, from + away + QPointF{0, 0.22 * length});
        path.quadTo(from + 0.5 * away - across * 0.05, from - across * 0.03);
    }
    return path;
}

/// Leaves whose trunk stands outside the picture, to the left (1) or right (-1) of it.
void paintPalm(Canvas &canvas, QPointF crown, double side, double reach)
{
    for (int i = 0; i < 7; ++i) {
        const double turn = 0.12 + 0.22 * i;
        const double own = reach * canvas.between(0.75, 1.1);
        const QPointF tip = crown + own * QPointF{side * std::cos(turn), std::sin(turn)};
        canvas.painter.fillPath(palmLeaf(crown, tip),
                                mixed({0x04, 0x3B, 0x34}, {0x1E, 0x8A, 0x52}, canvas.between(0, 1)));
    }
}

void paintFar(Canvas &canvas)
{
    canvas.fillDown(canvas.whole(), {{0, {0x0E, 0x6F, 0xD6}},
                                     {0.31, {0x5C, 0xC0, 0xF2}},
                                     {horizon, {0xFF, 0xE8, 0xC0}},
                                     {horizon + 0.001, {0x0B, 0x7F, 0xC4}},
                                     {0.71, {0x12, 0xB2, 0xCE}},
                                     {shore, {0x7C, 0xE6, 0xDC}}});
    const double u = canvas.unit();
    // Clouds.
    for (int i = 0; i < 24; ++i) {
        const double x = canvas.between(0, 1);
        canvas.glow(canvas.at(x, canvas.between(0.32, 0.5)), canvas.between(60, 190) * u, Qt::white, 0.35);
    }
    const QPointF sun = canvas.at(0.5, 0.28);
    canvas.glow(sun, 0.40 * canvas.reach(), sunlight, 0.55);
    canvas.glow(sun, 260 * u, sunlight, 0.8);
    canvas.rays(sun, 0.9 * canvas.reach(), 17, sunlight, 0.20);
}

void paintNear(Canvas &canvas)
{
    const double u = canvas.unit();
    canvas.painter.setPen(Qt::NoPen);
    paintGlitter(canvas);
    canvas.painter.fillPath(shoreLine(canvas, shore - 0.012), faded(Qt::white, 0.45));
    canvas.painter.fillPath(shoreLine(canvas, shore), faded(Qt::white, 0.9));
    canvas.painter.save();
    canvas.painter.setClipPath(shoreLine(canvas, shore + 0.016));
    canvas.fillDown({canvas.at(0, 0.7), canvas.at(1, 1)},
                    {{0.33, {0xE8, 0xC8, 0x8E}}, {0.5, {0xF8, 0xDF, 0xAA}}, {1, {0xE6, 0xB8, 0x72}}});
    canvas.painter.restore();
    paintPalm(canvas, canvas.at(-0.02, -0.06), 1, 640 * u);
    paintPalm(canvas, canvas.at(1.02, -0.08), -1, 560 * u);
    canvas.bokeh(18, 120 * u, {0xFF, 0xF3, 0xD0}, 0.16);
}

} // namespace

const Backdrop Backdrop::beach{
    {{0x03, 0x2B, 0x4A}, {0x1E, 0x8F, 0xD0}, {0xFF, 0xE9, 0xB0}, {0xFF, 0x8A, 0x3D}, {0x20, 0xD6, 0xD2}},
    paintFar,
    paintNear,
    u"海 沙滩 浪 岛 椰 棕榈 度假 夏 天空 泳 阳光 自然 森林 山 树 草 花 绿 春 户外 "
    u"露营 雪 湖 乡村 旅行 beach sea summer forest nature sun"};

} // namespace quilmora::localservice
