#include "screens/history/GridGeometry.h"

#include <algorithm>
#include <cmath>

namespace quilmora
{
namespace
{

constexpr double minimumColumnWidth = 10;

} // namespace

GridGeometry::GridGeometry(int width, int tileCount, int height)
    : columnWidth{std::max(minimumColumnWidth,
                           (width - 2.0 * sidePadding - (columns - 1.0) * spacing) / columns)},
      count{tileCount},
      textHeight{height}
{
}

QSize GridGeometry::tileSize() const
{
    const int width = static_cast<int>(std::floor(columnWidth));
    return {width, width + textHeight};
}

int GridGeometry::contentHeight() const
{
    const int rows = (count + columns - 1) / columns;
    return rows == 0 ? 0 : rows * rowHeight() - spacing + bottomPadding;
}

QRect GridGeometry::tile(int position) const
{
    const int left =
        sidePadding + static_cast<int>(std::lround((position % columns) * (columnWidth + spacing)));
    return {{left, position / columns * rowHeight()}, tileSize()};
}

int GridGeometry::positionAt(QPoint place) const
{
    if (place.y() < 0) {
        return -1;
    }
    const int first = place.y() / rowHeight() * columns;
    for (int position = first; position < std::min(first + columns, count); ++position) {
        if (tile(position).contains(place)) {
            return position;
        }
    }
    return -1;
}

std::pair<int, int> GridGeometry::positionsIn(int top, int bottom) const
{
    // The gap below a row counts as the row's.
    const int firstRow = std::max(0, top) / rowHeight();
    const int rowAfter = bottom <= 0 ? 0 : (bottom - 1) / rowHeight() + 1;
    const int first = std::min(firstRow * columns, count);
    return {first, std::clamp(rowAfter * columns, first, count)};
}

} // namespace quilmora
