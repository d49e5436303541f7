#pragma once

#include <QTransform>

class QPainter;

namespace quilmora {

/// Aligns shapes to the physical pixels of a painter. At a fractional device pixel ratio the bounds of a
/// widget lie between pixels, and lines along them are blurred.
class PixelSnapper final
{
public:
    explicit PixelSnapper(const QPainter &painter);

    /// The nearest corner of a pixel.
    QPointF aligned(QPointF place) const;

    /// Each side moved to the nearest pixel, where Qt clips a widget.
    QRectF aligned(const QRectF &bounds) const;

    /// The width of a line that covers whole pixels; at whole ratios just `width`.
    double lineWidth(double width) const;

    /// The same for the border of a control, which is thicker at high contrast.
    double borderWidth(double width = 1) const;

private:
    QTransform m_toPixels;
};

} // namespace quilmora
