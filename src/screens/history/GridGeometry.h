#pragma once

#include <QPoint>
#include <QRect>

#include <utility>
#include <vector>

namespace quilmora
{

/// Where the tiles of the history grid lie: four equal columns, whatever the width, filled row by row. A row
/// is as high as its highest tile. All in device-independent pixels from the top left corner of the grid's
/// content.
class GridGeometry final
{
public:
    static constexpr int columns = 4;
    static constexpr int spacing = 16;     ///< Between columns and between rows.
    static constexpr int sidePadding = 32; ///< To the left and to the right.
    static constexpr int bottomPadding = 32;

    /// `width` of the whole grid; how much higher than wide each tile is.
    explicit GridGeometry(int width = 0, std::vector<int> textHeights = {});

    /// The width of a tile in a grid of that width.
    static int tileWidth(int width);

    int tileWidth() const;
    int contentHeight() const;
    QRect tile(int position) const;

    /// From the top of a row to that of the next one.
    int rowHeight(int row) const;

    /// The position of the tile at a place; -1 where there is none.
    int positionAt(QPoint place) const;

    /// The first position whose tile reaches into the band from `top` to `bottom`, and the one after the
    /// last.
    std::pair<int, int> positionsIn(int top, int bottom) const;

    /// How many rows lie above a height, and the height below which so many lie. Part of a row counts as
    /// such.
    double rowsAbove(int y) const;
    int heightOf(double rows) const;

private:
    int count() const { return static_cast<int>(textHeights.size()); }
    int rowCount() const { return static_cast<int>(rowTops.size()) - 1; }
    int rowAt(int y) const; ///< The gap below a row counts as the row's.

    double columnWidth;
    std::vector<int> textHeights;
    std::vector<int> rowTops; ///< Also that of the row that would follow the last one.
};

} // namespace quilmora
