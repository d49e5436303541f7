#include "screens/history/GridGeometry.h"

#include <algorithm>
#include <cmath>

namespace quilmora {
namespace {

constexpr double minimumColumnWidth = 10;

double columnWidthIn(int width)
{
    constexpr int columns = GridGeometry::columns;
    const double gaps = 2.0 * GridGeometry::sidePadding + (columns - 1.0) * GridGeometry::spacing;
    return std::max(minimumColumnWidth, (width - gaps) / columns);
}

} // namespace

GridGeometry::GridGeometry(int width, std::vector<int> textHeights)
    : m_columnWidth{columnWidthIn(width)},
      m_textHeights{std::move(textHeights)}
{
    m_rowTops.reserve(m_textHeights.size() / columns + 2);
    m_rowTops.push_back(0);
    for (auto first = m_textHeights.begin(); first != m_textHeights.end();) {
        const auto end = first + std::min<std::ptrdiff_t>(columns, m_textHeights.end() - first);
        m_rowTops.push_back(m_rowTops.back() + tileWidth() + *std::max_element(first, end) + spacing);
        first = end;
    }
}

int GridGeometry::tileWidth(int width) { return static_cast<int>(std::floor(columnWidthIn(width))); }

int GridGeometry::tileWidth() const { return static_cast<int>(std::floor(m_columnWidth)); }

int GridGeometry::contentHeight() const
{
    return rowCount() == 0 ? 0 : m_rowTops.back() - spacing + bottomPadding;
}

QRect GridGeometry::tile(int position) const
{
    const int left =
        sidePadding + static_cast<int>(std::lround((position % columns) * (m_columnWidth + spacing)));
    const auto index = static_cast<std::size_t>(position);
    return {left, m_rowTops[index / columns], tileWidth(), tileWidth() + m_textHeights[index]};
}

int GridGeometry::rowHeight(int row) const
{
    const auto index = static_cast<std::size_t>(row);
    return m_rowTops[index + 1] - m_rowTops[index];
}

int GridGeometry::rowAt(int y) const
{
    return static_cast<int>(std::upper_bound(m_rowTops.begin() + 1, m_rowTops.end(), y) - m_rowTops.begin()) -
           1;
}

int GridGeometry::positionAt(QPoint place) const
{
    const int first = rowAt(place.y()) * columns;
    for (int position = first; position < std::min(first + columns, count()); ++position) {
        if (tile(position).contains(place)) {
            return position;
        }
    }
    return -1;
}

std::pair<int, int> GridGeometry::positionsIn(int top, int bottom) const
{
    const int first = std::min(rowAt(top) * columns, count());
    const int end = bottom <= 0 ? 0 : (rowAt(bottom - 1) + 1) * columns;
    return {first, std::clamp(end, first, count())};
}

double GridGeometry::rowsAbove(int y) const
{
    const int row = rowAt(y);
    return row == rowCount() ? row : row + static_cast<double>(y - heightOf(row)) / rowHeight(row);
}

int GridGeometry::heightOf(double rows) const
{
    const int whole = std::clamp(static_cast<int>(rows), 0, rowCount());
    const int top = m_rowTops[static_cast<std::size_t>(whole)];
    return whole == rowCount() ? top : top + qRound((rows - whole) * rowHeight(whole));
}

} // namespace quilmora
