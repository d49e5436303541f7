#include "screens/generate/FlowLayout.h"

#include <cmath>

namespace quilmora {
namespace {

/// The larger of the two; `current` when the comparison has no answer.
double larger(double current, double other)
{
    return other > current ? other : current;
}

} // namespace

QSizeF FlowLayout::sizeThatFits(double proposedWidth, const QList<QSizeF> &children) const
{
    double x = 0;
    double y = 0;
    double rowHeight = 0;
    for (const QSizeF &child : children) {
        if (x + child.width() > proposedWidth) {
            y += rowHeight + lineSpacing;
            x = child.width() + spacing;
            rowHeight = child.height();
        } else {
            x += child.width() + spacing;
            rowHeight = larger(rowHeight, child.height());
        }
    }
    return {std::isfinite(proposedWidth) ? proposedWidth : x, y + rowHeight};
}

QList<QPointF> FlowLayout::placeSubviews(const QRectF &bounds, const QList<QSizeF> &children) const
{
    QList<QPointF> corners;
    corners.reserve(children.size());
    double x = bounds.left();
    double y = bounds.top();
    double rowHeight = 0;
    for (const QSizeF &child : children) {
        if (x + child.width() > bounds.left() + bounds.width()) {
            x = bounds.left();
            y += rowHeight + lineSpacing;
            rowHeight = 0;
        }
        corners.append({x, y});
        x += child.width() + spacing;
        rowHeight = larger(rowHeight, child.height());
    }
    return corners;
}

} // namespace quilmora
