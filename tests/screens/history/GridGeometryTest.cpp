#include "screens/history/GridGeometry.h"

#include "support/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <cstddef>
#include <vector>

using namespace quilmora;

namespace {

/// Tiles that are all 50 higher than wide.
GridGeometry evenGrid(int width, std::size_t count)
{
    return GridGeometry{width, std::vector<int>(count, 50)};
}

} // namespace

class GridGeometryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fourEqualColumnsWhateverTheWidth()
    {
        for (const int width : {1000, 1001, 1002, 1003, 1004, 1111, 1600, 2560, 5120}) {
            const GridGeometry grid = evenGrid(width, 8);
            const int side = (width - 64 - 3 * 16) / 4;
            QCOMPARE(grid.tile(0), QRect(32, 0, side, side + 50));
            for (int column = 1; column < 4; ++column) {
                const QRect before = grid.tile(column - 1);
                const QRect tile = grid.tile(column);
                QCOMPARE(tile.size(), before.size());
                QCOMPARE(tile.top(), 0);
                // A width that four columns do not share evenly gives some gaps one more.
                const int gap = tile.left() - before.right() - 1;
                QVERIFY2(gap == 16 || (gap == 17 && (width - 112) % 4 != 0),
                         qPrintable(QString::number(gap)));
            }
            const int rest = width - 32 - (grid.tile(3).right() + 1);
            QVERIFY2(rest == 0 || rest == 1, qPrintable(QString::number(rest)));
            QCOMPARE(grid.tile(4).topLeft(), QPoint(32, side + 50 + 16));
        }
        QCOMPARE(evenGrid(0, 4).tile(0).size(), QSize(10, 60));
    }

    void theContentEndsBelowTheLastRow()
    {
        QCOMPARE(evenGrid(1000, 0).contentHeight(), 0);
        const QList<std::pair<int, int>> rowsOf{{1, 1}, {4, 1}, {5, 2}, {10'000, 2500}};
        for (const auto &[count, rows] : rowsOf) {
            const GridGeometry grid = evenGrid(1000, static_cast<std::size_t>(count));
            QCOMPARE(grid.contentHeight(), rows * 272 + (rows - 1) * 16 + 32);
            QCOMPARE(grid.contentHeight(), grid.tile(count - 1).bottom() + 1 + 32);
        }
    }

    void everyPlaceOfATileBelongsToItAndGapsToNone()
    {
        const GridGeometry grid = evenGrid(1003, 9);
        for (int position = 0; position < 9; ++position) {
            const QRect tile = grid.tile(position);
            QCOMPARE(grid.positionAt(tile.topLeft()), position);
            QCOMPARE(grid.positionAt(tile.bottomRight()), position);
            QCOMPARE(grid.positionAt(tile.topLeft() - QPoint{1, 0}), -1);
            QCOMPARE(grid.positionAt(tile.bottomRight() + QPoint{0, 1}), -1);
        }
        // Nor do places past the last tile belong to any.
        const QPoint toNextColumn = grid.tile(1).topLeft() - grid.tile(0).topLeft();
        QCOMPARE(grid.positionAt(grid.tile(8).center() + toNextColumn), -1);
        QCOMPARE(grid.positionAt(grid.tile(8).center() + QPoint{0, 288}), -1);
        QCOMPARE(grid.positionAt({100, -1}), -1);
        QCOMPARE(evenGrid(1000, 0).positionAt({100, 100}), -1);
    }

    void aBandHoldsTheRowsThatReachIntoIt()
    {
        // A row is 272 high, and 16 lie between rows.
        using Pair = std::pair<int, int>;
        const QList<std::pair<Pair, Pair>> bands{
            {{0, 0}, {0, 0}},      {{0, 1}, {0, 4}},      {{0, 288}, {0, 4}},       {{0, 289}, {0, 8}},
            {{271, 600}, {0, 10}}, {{288, 600}, {4, 10}}, {{5000, 6000}, {10, 10}}, {{-100, 10}, {0, 4}},
        };
        for (const auto &[band, positions] : bands) {
            QCOMPARE(evenGrid(1000, 10).positionsIn(band.first, band.second), positions);
        }
    }

    void aRowIsAsHighAsItsHighestTile()
    {
        const GridGeometry grid{1000, {20, 20, 20, 20, 20, 40, 20, 20, 20}};
        QCOMPARE(grid.tile(0).height(), 222 + 20);
        QCOMPARE(grid.tile(4).top(), 222 + 20 + 16);
        QCOMPARE(grid.tile(4).height(), 222 + 20);
        QCOMPARE(grid.tile(5).height(), 222 + 40);
        QCOMPARE(grid.tile(8).top(), grid.tile(5).bottom() + 1 + 16);
        QCOMPARE(grid.rowHeight(0), 222 + 20 + 16);
        QCOMPARE(grid.rowHeight(1), 222 + 40 + 16);
        // What lies below a tile that is not the highest one of its row belongs to none.
        QCOMPARE(grid.positionAt(grid.tile(4).bottomLeft()), 4);
        QCOMPARE(grid.positionAt(grid.tile(4).bottomLeft() + QPoint{0, 10}), -1);
        QCOMPARE(grid.positionsIn(grid.tile(8).top() - 1, grid.tile(8).top() + 1), (std::pair{4, 9}));
    }

    void aHeightIsFoundAgainInRows()
    {
        const GridGeometry grid{1000, {20, 20, 20, 20, 40, 20, 20, 20, 20}};
        QCOMPARE(grid.rowsAbove(0), 0.0);
        QCOMPARE(grid.rowsAbove(grid.tile(4).top()), 1.0);
        QCOMPARE(grid.rowsAbove(grid.tile(4).top() + grid.rowHeight(1) / 2), 1.5);
        const int end = grid.contentHeight();
        for (int y = 0; y < end; y += 7) {
            QCOMPARE(grid.heightOf(grid.rowsAbove(y)), std::min(y, end - 16));
        }
        QCOMPARE(GridGeometry{}.rowsAbove(5), 0.0);
        QCOMPARE(GridGeometry{}.heightOf(3.5), 0);
    }
};

QUILMORA_TEST(GridGeometryTest, quilmora::test::runTest)
#include "GridGeometryTest.moc"
