#pragma once

#include <QPoint>
#include <QRect>

#include <utility>

namespace quilmora
{

/// Where the tiles of the history grid lie: four equal columns, whatever the width, filled row by row. All in
/// device-independent pixels from the top left corner of the grid's content.
class GridGeometry final
{
public:
    static constexpr int columns = 4;
    static constexpr int spacing = 16;     ///< Between columns and between rows.
    static constexpr int sidePadding = 32; ///< To the left and to the right.
    static constexpr int bottomPadding = 32;

    /// `width` of the whole grid, `count` of the tiles; a tile is `textHeight` higher than it is wide.
    GridGeometry(int width, int count, int textHeight);

    QSize tileSize() const;
    int rowHeight() const { return tileSize().height() + spacing; } ///< From one row to the next.
    int contentHeight() const;

    QRect tile(int position) const;

    /// The position of the tile at a place; -1 where there is none.
    int positionAt(QPoint place) const;

    /// The first position whose tile reaches into the band from `top` to `bottom`, and the one after the
    /// last.
    std::pair<int, int> positionsIn(int top, int bottom) const;

private:
    double columnWidth;
    int count;
    int textHeight;
};

} // namespace quilmora
