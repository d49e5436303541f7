#pragma once

#include <QTransform>

class QPainter;

namespace quilmora
{

/// The pixels that a painter draws on. Where a screen has a fraction of a pixel more than one for each
/// device-independent one, the bounds of a widget lie between pixels, and what is drawn along them is soft
/// unless it is moved onto the grid.
class PixelGrid final
{
public:
    explicit PixelGrid(const QPainter &painter);

    /// The corner of a pixel that is nearest to `place`.
    QPointF aligned(QPointF place) const;

    /// `bounds` with each side moved to the nearest pixel, which for a widget is where Qt clips it.
    /// At whole ratios nothing changes for the bounds of a widget.
    QRectF aligned(const QRectF &bounds) const;

    /// The width of a line that covers whole pixels; at whole ratios just `width`.
    double lineWidth(double width) const;

private:
    QTransform toPixels;
};

} // namespace quilmora
