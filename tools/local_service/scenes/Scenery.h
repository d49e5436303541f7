#pragma once

#include "local_service/scenes/SceneStage.h"

#include <QPainterPath>
#include <QRectF>

#include <initializer_list>
#include <utility>

/// Pieces that several scenes are built of.
namespace quilmora::scenery
{

using Stops = std::initializer_list<std::pair<double, QColor>>;

/// Fills `area` from top to bottom with the colours at the given shares of its height.
void fillDown(SceneStage &stage, const QRectF &area, Stops stops);
/// The same from left to right.
void fillAcross(SceneStage &stage, const QRectF &area, Stops stops);

/// How a row of buildings looks.
struct Skyline {
    double narrowest; ///< Width of a building in pixels.
    double widest;
    QColor body;
    QColor windows;
    double litShare; ///< Of the windows, 0 to 1.
};
/// Buildings side by side that stand on the lower edge of `area` and reach up to its upper edge at most.
void skyline(SceneStage &stage, const QRectF &area, const Skyline &look);

/// A mountain range from the left to the right edge, closed along the lower edge of the stage: its ridge
/// keeps around `level` and rises and falls by `height`, both shares of the stage's height.
QPainterPath ridge(SceneStage &stage, double level, double height);

/// A fir standing with its foot at `foot`.
QPainterPath fir(QPointF foot, double height);

/// A palm leaf that begins at `root` and bends down to `tip`.
QPainterPath palmLeaf(QPointF root, QPointF tip, double breadth);

} // namespace quilmora::scenery
