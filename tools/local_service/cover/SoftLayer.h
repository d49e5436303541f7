#pragma once

#include <QPainter>
#include <QSize>

#include <functional>

/// Painting of everything that is out of focus.
namespace quilmora::localservice::softLayer {

/// Lets `paint` paint in the cover's coordinates and puts that onto the whole cover, out of focus by about
/// `softness` cover pixels. It is painted small and enlarged, which costs little at any size.
void put(QPainter &cover, QSize size, double softness, const std::function<void(QPainter &)> &paint,
         QPainter::CompositionMode mode = QPainter::CompositionMode_SourceOver);

} // namespace quilmora::localservice::softLayer
