#include "local_service/scenes/Backdrop.h"

#include <QPainter>

namespace quilmora::localservice {
namespace {

constexpr double ceiling = 0.075;

void paintWindows(Canvas &canvas, const QRectF &area)
{
    canvas.fillDown(area, {{0, {0x17, 0x25, 0x55}},
                           {0.42, {0x6A, 0x45, 0x7A}},
                           {0.72, {0xF0, 0x86, 0x5A}},
                           {1, {0xFF, 0xCE, 0x85}}});
    canvas.painter.save();
    canvas.painter.setClipRect(area);
    const double u = canvas.unit();
    canvas.glow({area.left() + 0.62 * area.width(), area.top() + 0.80 * area.height()}, 0.55 * area.width(),
                {0xFF, 0xC0, 0x70}, 0.75);
    canvas.skyline(area.adjusted(0, 0.40 * area.height(), 0, 0), 42 * u, {0x8A, 0x55, 0x72},
                   {0xFF, 0xDD, 0xA0}, 0.22);
    canvas.skyline(area.adjusted(0, 0.48 * area.height(), 0, 0), 66 * u, {0x38, 0x26, 0x45},
                   {0xFF, 0xD0, 0x80}, 0.40);
    canvas.painter.restore();
    const QColor frame{0x1C, 0x11, 0x0C};
    const double broad = 13 * u;
    const int panes = area.width() > area.height() ? 7 : 3;
    for (int i = 0; i <= panes; ++i) {
        const double x = area.left() + area.width() * i / panes - broad / 2;
        canvas.painter.fillRect(QRectF{x, area.top(), broad, area.height()}, frame);
        canvas.painter.fillRect(QRectF{x + broad, area.top(), broad / 5, area.height()},
                                QColor{0xB9, 0x7C, 0x48});
    }
}

void paintCeiling(Canvas &canvas)
{
    const QRectF area{QPointF{}, canvas.at(1, ceiling)};
    const QColor warm{0xFF, 0xD9, 0x9A};
    const double u = canvas.unit();
    canvas.fillDown(area, {{0, {0x1B, 0x10, 0x0B}}, {1, {0x3A, 0x22, 0x15}}});
    canvas.painter.fillRect(QRectF{0, area.bottom() - 5 * u, canvas.width(), 7 * u}, warm);
    const int lamps = canvas.width() > canvas.height() ? 7 : 4;
    for (int i = 0; i < lamps; ++i) {
        const QPointF lamp = canvas.at((i + 0.5) / lamps, ceiling * 0.5);
        canvas.glow(lamp, 170 * u, warm, 0.75);
        canvas.painter.setBrush(QColor{0xFF, 0xF4, 0xDC});
        canvas.painter.drawEllipse(lamp, 24 * u, 10 * u);
    }
}

void paintFar(Canvas &canvas)
{
    const QRectF windows{canvas.at(0.03, ceiling),
                         canvas.at(0.97, canvas.width() > canvas.height() ? 0.77 : 0.62)};
    canvas.painter.setPen(Qt::NoPen);
    canvas.painter.fillRect(canvas.whole(), mixed({0x3A, 0x22, 0x16}, canvas.palette.base, 0.6));
    paintWindows(canvas, windows);
    canvas.fillDown({QPointF{0, windows.bottom()}, canvas.at(1, 1)},
                    {{0, {0x5A, 0x36, 0x22}}, {0.35, {0x3A, 0x22, 0x16}}, {1, {0x16, 0x0C, 0x08}}});
    for (int i = 0; i < 5; ++i) {
        const QPointF spot{windows.left() + windows.width() * (i + 0.5) / 5, windows.bottom()};
        canvas.glow(spot, 220 * canvas.unit(), {0xFF, 0x9A, 0x55}, 0.35);
    }
    paintCeiling(canvas);
    canvas.glow(canvas.focus, 0.75 * canvas.height(), canvas.palette.glow, 0.38);
    canvas.rays(canvas.focus, canvas.width(), 15, canvas.palette.glow, 0.30);
}

void paintNear(Canvas &canvas)
{
    const double u = canvas.unit();
    const QRectF desk{canvas.at(0, 0.925), canvas.at(1, 1)};
    canvas.fillDown(desk, {{0, {0xFF, 0xE9, 0xC4}},
                           {0.06, {0x7A, 0x49, 0x2A}},
                           {0.15, {0x4A, 0x2A, 0x18}},
                           {1, {0x1A, 0x0D, 0x07}}});
    canvas.bokeh(26, 110 * u, {0xFF, 0xC8, 0x7A}, 0.16);
    canvas.bokeh(120, 7 * u, {0xFF, 0xE3, 0xB0}, 0.8);
}

} // namespace

const Backdrop Backdrop::office{
    {{0x1A, 0x0E, 0x08}, {0x6B, 0x42, 0x26}, {0xFF, 0xC8, 0x7A}, {0xFF, 0xB2, 0x3E}, {0xFF, 0x6A, 0x3D}},
    paintFar,
    paintNear,
    u"办公 豪华 会议 商务 老板 公司 职场 书 室内 客厅 酒店 教室 金 财 钱 富 赚 "
    u"收入 投资 食 餐 火锅 厨 咖啡 秋 暖 office gold money food warm"};

} // namespace quilmora::localservice
