#pragma once

#include "local_service/scenes/SceneStage.h"

#include <QRectF>

/// Light as a camera sees it: glows, rays, bokeh and sparkles. All add light to what is already there.
namespace quilmora::lightEffects
{

/// A soft disc of light that is `strength` (0 to 1) at its centre and nothing at `radius`.
void glow(QPainter &painter, QPointF centre, double radius, const QColor &colour, double strength);

/// Wedges of light from `centre` out to `radius`, `count` of them, of uneven width.
void rays(SceneStage &stage, QPointF centre, double radius, int count, const QColor &colour, double strength);

/// Discs of unfocused lights within `area`, between `smallest` and `largest` cover pixels across.
void bokeh(SceneStage &stage, const QRectF &area, int count, double smallest, double largest,
           const QColor &colour, double strength);

/// Four-pointed stars within `area`, up to `largest` cover pixels long.
void sparkles(SceneStage &stage, const QRectF &area, int count, double largest, const QColor &colour);

/// Points of light within `area`, up to `largest` cover pixels across.
void dust(SceneStage &stage, const QRectF &area, int count, double largest, const QColor &colour);

} // namespace quilmora::lightEffects
