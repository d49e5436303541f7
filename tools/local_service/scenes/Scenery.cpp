#include "local_service/scenes/Scenery.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace quilmora::scenery
{
namespace
{

void fill(SceneStage &stage, const QRectF &area, QLinearGradient gradient, Stops stops)
{
    for (const auto &[share, colour] : stops) {
        gradient.setColorAt(share, colour);
    }
    stage.painter.fillRect(area, gradient);
}

void paintWindows(SceneStage &stage, const QRectF &building, const Skyline &look)
{
    const double cell = look.narrowest / 4;
    const int columns = static_cast<int>((building.width() - cell * 0.2) / cell);
    const int floors = static_cast<int>((building.height() - cell) / (cell * 1.25));
    for (int level = 0; level < floors; ++level) {
        for (int column = 0; column < columns; ++column) {
            if (stage.between(0, 1) < look.litShare) {
                const QPointF corner{building.left() + cell * (column + 0.4),
                                     building.top() + cell * (level * 1.25 + 1)};
                stage.painter.fillRect(QRectF{corner, QSizeF{cell * 0.55, cell * 0.7}},
                                       faded(look.windows, stage.between(0.35, 1)));
            }
        }
    }
}

} // namespace

void fillDown(SceneStage &stage, const QRectF &area, Stops stops)
{
    fill(stage, area, QLinearGradient{area.topLeft(), area.bottomLeft()}, stops);
}

void fillAcross(SceneStage &stage, const QRectF &area, Stops stops)
{
    fill(stage, area, QLinearGradient{area.topLeft(), area.topRight()}, stops);
}

void skyline(SceneStage &stage, const QRectF &area, const Skyline &look)
{
    double left = area.left() - look.narrowest * 0.3;
    while (left < area.right()) {
        const double width = stage.between(look.narrowest, look.widest);
        const double tall = stage.between(0.35, 1);
        const double height = area.height() * tall;
        const QRectF building{left, area.bottom() - height, width, height};
        stage.painter.fillRect(building, look.body);
        if (tall > 0.6) {
            const double setBack = width * 0.22;
            stage.painter.fillRect(
                QRectF{left + setBack, building.top() - width * 0.25, width - 2 * setBack, width * 0.26},
                look.body);
        }
        if (tall > 0.82) {
            stage.painter.fillRect(QRectF{building.center().x() - width * 0.02, building.top() - width * 0.9,
                                          width * 0.04, width * 0.9},
                                   look.body);
        }
        paintWindows(stage, building, look);
        left += width * stage.between(0.92, 1.12);
    }
}

QPainterPath ridge(SceneStage &stage, double level, double height)
{
    constexpr int steps = 90;
    const std::array<double, 3> phases{stage.between(0, 6.3), stage.between(0, 6.3), stage.between(0, 6.3)};
    QPainterPath path{stage.at(0, 1.02)};
    for (int i = 0; i <= steps; ++i) {
        const double share = double(i) / steps;
        const double wave = std::abs(std::sin(4.1 * share + phases[0])) * 0.6 +
                            std::abs(std::sin(9.7 * share + phases[1])) * 0.28 +
                            std::abs(std::sin(23 * share + phases[2])) * 0.12;
        path.lineTo(stage.at(share, level - height * wave));
    }
    path.lineTo(stage.at(1, 1.02));
    path.closeSubpath();
    return path;
}

QPainterPath fir(QPointF foot, double height)
{
    constexpr int tiers = 8;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRect(QRectF{foot.x() - height * 0.016, foot.y() - height * 0.5, height * 0.032, height * 0.5});
    for (int tier = 0; tier < tiers; ++tier) {
        const double share = double(tier) / tiers;
        const double bottom = foot.y() - height * (0.05 + 0.80 * share);
        const double top = std::max(bottom - height * (0.30 - 0.08 * share), foot.y() - height);
        const double half = height * (0.20 - 0.165 * share);
        path.moveTo(foot.x(), top);
        path.quadTo(foot.x() + half * 0.25, bottom - (bottom - top) * 0.45, foot.x() + half, bottom);
        path.quadTo(foot.x() + half * 0.4, bottom - height * 0.012, foot.x(), bottom - height * 0.03);
        path.quadTo(foot.x() - half * 0.4, bottom - height * 0.012, foot.x() - half, bottom);
        path.quadTo(foot.x() - half * 0.25, bottom - (bottom - top) * 0.45, foot.x(), top);
        path.closeSubpath();
    }
    return path;
}

QPainterPath palmLeaf(QPointF root, QPointF tip, double breadth)
{
    constexpr int leaflets = 26;
    const QPointF along = tip - root;
    const QPointF bend = (root + tip) / 2 + QPointF{0, -0.28 * std::hypot(along.x(), along.y())};
    QPainterPath spine{root};
    spine.quadTo(bend, tip);
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    for (int i = 1; i <= leaflets; ++i) {
        const double share = double(i) / leaflets;
        const QPointF from = spine.pointAtPercent(share * 0.97);
        const double angle = -spine.angleAtPercent(share * 0.97) * std::numbers::pi / 180;
        const double length = breadth * std::sin(std::numbers::pi * (0.18 + 0.78 * share)) + breadth * 0.12;
        for (const double side : {-1.0, 1.0}) {
            const double own = angle + side * (1.15 - 0.55 * share);
            const QPointF away{std::cos(own), std::sin(own)};
            const QPointF end = from + length * away + QPointF{0, 0.22 * length};
            const QPointF across{-away.y(), away.x()};
            path.moveTo(from - across * breadth * 0.03);
            path.quadTo(from + 0.5 * length * away + across * breadth * 0.07, end);
            path.quadTo(from + 0.5 * length * away - across * breadth * 0.05, from - across * breadth * 0.03);
        }
    }
    return path;
}

} // namespace quilmora::scenery
