#pragma once

#include <QRectF>
#include <QString>

class QWidget;

/// Where pieces lie to each other, in device-independent pixels.
namespace quilmora::test::placement {

/// Where a piece lies in its window.
QRect inWindow(const QWidget *piece);

/// The room between the lower edge of one piece and the upper edge of another, and from right to left edge.
int gapBelow(const QWidget *upper, const QWidget *lower);
int gapBeside(const QWidget *left, const QWidget *right);

/// Whether the middles of both lie on one line from top to bottom, as far as whole pixels allow.
bool centredAcross(const QRectF &piece, const QRectF &ground);

/// The room that is left around `content` in `ground`: "left, top, right, bottom", in whole pixels.
QString padding(const QRectF &ground, const QRectF &content);

} // namespace quilmora::test::placement
