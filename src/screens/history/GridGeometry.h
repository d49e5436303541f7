#pragma once

#include "ui/theme/Measures.h"

#include <QPoint>
#include <QRect>

#include <utility>
#include <vector>

namespace quilmora {

/// The places of the tiles in the history grid: four equal columns, filled row by row. A row is as high as
/// its highest tile. In device-independent pixels from the top left corner of the content.
class GridGeometry final
{
public:
    static constexpr int columns = 4;
    static constexpr int spacing = 16; ///< Between columns and between rows.
    static constexpr int sidePadding = measures::pagePadding;
    static constexpr int bottomPadding = measures::pagePadding;

    /// `width` of the whole grid; `textHeights` of the tiles below their squares.
    explicit GridGeometry(int width = 0, std::vector<int> textHeights = {});

    /// In a grid of that width.
    static int tileWidth(int width);

    int tileWidth() const;
    int contentHeight() const;
    QRect tile(int position) const;

    /// With the spacing below.
    int rowHeight(int row) const;

    /// The tile at a place, or -1.
    int positionAt(QPoint place) const;

    /// The first position in the rows between `top` and `bottom`, and the one after the last.
    std::pair<int, int> positionsIn(int top, int bottom) const;

    /// Converts between a height and a number of rows with its fraction.
    double rowsAbove(int y) const;
    int heightOf(double rows) const;

private:
    int count() const { return static_cast<int>(m_textHeights.size()); }
    int rowCount() const { return static_cast<int>(m_rowTops.size()) - 1; }
    int rowAt(int y) const; ///< The spacing belongs to the row above.

    double m_columnWidth;
    std::vector<int> m_textHeights;
    std::vector<int> m_rowTops; ///< With one entry after the last row.
};

} // namespace quilmora
