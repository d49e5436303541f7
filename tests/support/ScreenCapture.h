#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

class QWidget;

/// Pictures of widgets, to be looked at by tests.
namespace quilmora::test::screenCapture {

/// `widget` as it paints itself, on transparent ground, at that many pixels per device-independent pixel.
QImage capture(QWidget *widget, double devicePixelRatio = 1.0);

/// The colour at a place given in device-independent pixels.
QColor colorAt(const QImage &picture, QPointF place);

/// The colour with components from 0 to 1 as a picture holds it, with 8 bits each.
QColor srgb(double red, double green, double blue, double opacity = 1.0);

/// Whether two colours differ by at most `tolerance` of 255 in every component, opacity included.
bool isClose(const QColor &first, const QColor &second, int tolerance = 2);

/// How many pixels inside `area` (in pixels; empty for all) are close to `color`.
int countOf(const QImage &picture, const QColor &color, QRect area = {}, int tolerance = 2);

/// `color` laid over another one.
QColor over(const QColor &color, const QColor &ground);

/// Whether every pixel inside `area` is close to `color`; without a color, whether nothing is drawn there.
bool isPlain(const QImage &picture, QRect area, const QColor &color = Qt::transparent);

/// A colour for messages: "#AARRGGBB".
QString text(const QColor &color);

} // namespace quilmora::test::screenCapture
