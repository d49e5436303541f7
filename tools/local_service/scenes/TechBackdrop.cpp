#include "local_service/scenes/Backdrop.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace quilmora::localservice {
namespace {

constexpr double horizon = 0.70;

/// A line of light: a broad faint stroke under a thin bright one.
void paintNeon(QPainter &painter, const QList<QPointF> &points, const QColor &color, double width,
               double strength)
{
    QPainterPath path;
    path.addPolygon(points);
    painter.strokePath(path, QPen{faded(color, 0.16 * strength), width * 7});
    painter.strokePath(path, QPen{faded(color, 0.30 * strength), width * 3});
    painter.strokePath(path, QPen{faded(mixed(color, Qt::white, 0.35), 0.9 * strength), width});
}

void paintGrid(Canvas &canvas)
{
    const double top = horizon * canvas.height();
    const double u = canvas.unit();
    const QColor &color = canvas.palette.accent;
    for (int i = 1; i <= 13; ++i) {
        const double share = std::pow(i / 13.0, 2.1);
        const double y = top + (canvas.height() - top) * share;
        paintNeon(canvas.painter, {{0, y}, {canvas.width(), y}}, color, (0.8 + 2.2 * share) * u,
                  0.25 + 0.65 * share);
    }
    const double step = 0.13 * canvas.reach();
    const double middle = canvas.width() / 2;
    for (int i = -22; i <= 22; ++i) {
        paintNeon(canvas.painter,
                  {{middle + i * step * 0.16, top}, {middle + i * step * 1.4, canvas.height()}}, color,
                  1.6 * u, 0.55);
    }
    paintNeon(canvas.painter, {{0, top}, {canvas.width(), top}},
              mixed(canvas.palette.accent2, Qt::white, 0.4), 4 * u, 1);
}

/// A conductor from the left (1) or right (-1) edge that bends by 45 degrees and ends in a pad.
void paintTrace(Canvas &canvas, double direction)
{
    const double u = canvas.unit();
    const double aside = canvas.between(-110, 110) * u;
    const QPointF start{direction > 0 ? 0 : canvas.width(), canvas.between(0.08, 0.65) * canvas.height()};
    const QPointF bend = start + QPointF{direction * canvas.between(120, 380) * u, 0};
    const QPointF second = bend + QPointF{direction * std::abs(aside), aside};
    const QPointF pad = second + QPointF{direction * canvas.between(40, 220) * u, 0};
    paintNeon(canvas.painter, {start, bend, second, pad}, canvas.palette.accent, 2 * u, 0.55);
    canvas.glow(pad, 26 * u, canvas.palette.accent, 0.8);
    canvas.glow(pad, 8 * u, Qt::white, 1);
}

void paintFar(Canvas &canvas)
{
    const Palette &palette = canvas.palette;
    canvas.fillDown(canvas.whole(), {{0, palette.deep},
                                     {0.45, palette.base},
                                     {horizon, mixed(palette.base, palette.accent2, 0.55)},
                                     {horizon + 0.001, mixed(palette.deep, palette.base, 0.5)},
                                     {1, palette.deep}});
    canvas.glow(canvas.at(0.5, horizon), 0.42 * canvas.reach(), palette.accent2, 0.75);
    canvas.glow(canvas.focus, 0.40 * canvas.reach(), palette.accent, 0.45);
    const double u = canvas.unit();
    canvas.skyline({canvas.at(0, horizon - 0.27), canvas.at(1, horizon)}, 46 * u, {0x1A, 0x10, 0x52},
                   palette.accent, 0.30);
    canvas.skyline({canvas.at(0, horizon - 0.14), canvas.at(1, horizon)}, 60 * u, {0x0B, 0x08, 0x2E},
                   palette.accent2, 0.26);
}

void paintNear(Canvas &canvas)
{
    canvas.painter.setCompositionMode(QPainter::CompositionMode_Plus);
    paintGrid(canvas);
    const double u = canvas.unit();
    for (int i = 0; i < 14; ++i) {
        paintTrace(canvas, i % 2 == 0 ? 1 : -1);
    }
    canvas.bokeh(16, 90 * u, canvas.palette.accent2, 0.16);
    canvas.bokeh(160, 8 * u, canvas.palette.accent, 0.8);
}

} // namespace

const Backdrop Backdrop::tech{
    {{0x05, 0x06, 0x1E}, {0x1B, 0x17, 0x5E}, {0x7A, 0x8C, 0xFF}, {0x1F, 0xE5, 0xFF}, {0xFF, 0x3D, 0xC8}},
    paintFar,
    paintNear,
    u"科技 未来 霓虹 赛博 数字 数据 智能 机器 电脑 编程 代码 芯片 网 游戏 科幻 夜 "
    u"街 城市 都市 上海 星 宇宙 太空 银河 暗 黑 tech neon night city space"};

} // namespace quilmora::localservice
