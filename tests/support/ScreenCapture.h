#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QRect>

#include <functional>

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

/// How many pixels inside `area` (in pixels; empty for all) are as `condition` says.
int countIf(const QImage &picture, const std::function<bool(const QColor &)> &condition, QRect area = {});
/// How many of them are close to `color`, and how many are not.
int countOf(const QImage &picture, const QColor &color, QRect area = {}, int tolerance = 2);
int countBeside(const QImage &picture, const QColor &color, QRect area = {}, int tolerance = 2);
/// How many pixels of two pictures of the same size are not close to each other.
int countDifferent(const QImage &first, const QImage &second, QRect area = {}, int tolerance = 24);

/// Where `isSo` holds for the numbers from 0: for each run of them its start and its length.
QList<QPoint> runs(int count, const std::function<bool(int)> &isSo);

/// `color` laid over another one.
QColor over(const QColor &color, const QColor &ground);

/// Whether every pixel inside `area` is close to `color`; without a color, whether nothing is drawn there.
bool isPlain(const QImage &picture, QRect area, const QColor &color = Qt::transparent);

/// Compares the face of a button, captured at 1.0, with the gradient of the application from left to right.
/// Empty when it is so; otherwise where it differs.
QString differenceFromAccentGradient(const QImage &face, int tolerance);

/// A colour for messages: "#AARRGGBB".
QString text(const QColor &color);

} // namespace quilmora::test::screenCapture
