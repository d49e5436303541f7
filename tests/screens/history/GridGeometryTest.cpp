#include "screens/history/GridGeometry.h"

#include <QTest>

using namespace quilmora;

class GridGeometryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fourEqualColumnsWhateverTheWidth_data();
    void fourEqualColumnsWhateverTheWidth();
    void aTileIsAQuarterOfWhatThreeGapsLeave();
    void theFifthTileStartsTheSecondRow();
    void theContentEndsBelowTheLastRow_data();
    void theContentEndsBelowTheLastRow();
    void everyPlaceOfATileBelongsToItAndGapsToNone();
    void placesPastTheLastTileBelongToNone();
    void aBandHoldsTheRowsThatReachIntoIt_data();
    void aBandHoldsTheRowsThatReachIntoIt();
    void aWidthThatIsTooSmallGivesNoUpsideDownTiles();
};

void GridGeometryTest::fourEqualColumnsWhateverTheWidth_data()
{
    QTest::addColumn<int>("width");
    for (const int width : {1000, 1001, 1002, 1003, 1004, 1111, 1600, 2560, 5120}) {
        QTest::addRow("%d", width) << width;
    }
}

void GridGeometryTest::fourEqualColumnsWhateverTheWidth()
{
    QFETCH(const int, width);
    const GridGeometry grid{width, 8, 50};
    QCOMPARE(grid.tile(0).left(), 32);
    for (int column = 1; column < 4; ++column) {
        const QRect before = grid.tile(column - 1);
        const QRect tile = grid.tile(column);
        QCOMPARE(tile.size(), before.size());
        QCOMPARE(tile.top(), 0);
        // A width that four columns do not share evenly gives some gaps one more.
        const int gap = tile.left() - before.right() - 1;
        QVERIFY2(gap == 16 || (gap == 17 && (width - 112) % 4 != 0), qPrintable(QString::number(gap)));
    }
    const int rest = width - 32 - (grid.tile(3).right() + 1);
    QVERIFY2(rest == 0 || rest == 1, qPrintable(QString::number(rest)));
}

void GridGeometryTest::aTileIsAQuarterOfWhatThreeGapsLeave()
{
    const GridGeometry grid{1000, 1, 50};
    QCOMPARE(grid.tile(0), QRect(32, 0, (1000 - 64 - 3 * 16) / 4, (1000 - 64 - 3 * 16) / 4 + 50));
}

void GridGeometryTest::theFifthTileStartsTheSecondRow()
{
    const GridGeometry grid{1000, 5, 50};
    QCOMPARE(grid.tile(4).left(), grid.tile(0).left());
    QCOMPARE(grid.tile(4).top(), grid.tile(0).bottom() + 1 + 16);
    QCOMPARE(grid.tile(3).top(), 0);
}

void GridGeometryTest::theContentEndsBelowTheLastRow_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("rows");
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("a full row") << 4 << 1;
    QTest::newRow("one more") << 5 << 2;
    QTest::newRow("ten thousand") << 10'000 << 2500;
}

void GridGeometryTest::theContentEndsBelowTheLastRow()
{
    QFETCH(const int, count);
    QFETCH(const int, rows);
    const GridGeometry grid{1000, count, 50};
    QCOMPARE(grid.contentHeight(), rows * 272 + (rows - 1) * 16 + 32);
    QCOMPARE(grid.contentHeight(), grid.tile(count - 1).bottom() + 1 + 32);
}

void GridGeometryTest::everyPlaceOfATileBelongsToItAndGapsToNone()
{
    const GridGeometry grid{1003, 9, 50};
    for (int position = 0; position < 9; ++position) {
        const QRect tile = grid.tile(position);
        QCOMPARE(grid.positionAt(tile.topLeft()), position);
        QCOMPARE(grid.positionAt(tile.bottomRight()), position);
        QCOMPARE(grid.positionAt(tile.topLeft() - QPoint{1, 0}), -1);
        QCOMPARE(grid.positionAt(tile.bottomRight() + QPoint{0, 1}), -1);
    }
}

void GridGeometryTest::placesPastTheLastTileBelongToNone()
{
    const GridGeometry grid{1000, 2, 50};
    QCOMPARE(grid.positionAt(grid.tile(2).center()), -1);
    QCOMPARE(grid.positionAt(grid.tile(4).center()), -1);
    QCOMPARE(grid.positionAt({100, -1}), -1);
    QCOMPARE((GridGeometry{1000, 0, 50}.positionAt({100, 100})), -1);
    QCOMPARE((GridGeometry{1000, 0, 50}.contentHeight()), 0);
}

void GridGeometryTest::aBandHoldsTheRowsThatReachIntoIt_data()
{
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("bottom");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("end");
    // A row is 272 high, and 16 lie between rows.
    QTest::newRow("nothing") << 0 << 0 << 0 << 0;
    QTest::newRow("one line") << 0 << 1 << 0 << 4;
    QTest::newRow("the first row") << 0 << 288 << 0 << 4;
    QTest::newRow("a line of the second") << 0 << 289 << 0 << 8;
    QTest::newRow("from inside the first") << 271 << 600 << 0 << 10;
    QTest::newRow("from the second") << 288 << 600 << 4 << 10;
    QTest::newRow("behind the end") << 5000 << 6000 << 10 << 10;
    QTest::newRow("above the start") << -100 << 10 << 0 << 4;
}

void GridGeometryTest::aBandHoldsTheRowsThatReachIntoIt()
{
    QFETCH(const int, top);
    QFETCH(const int, bottom);
    QFETCH(const int, first);
    QFETCH(const int, end);
    QCOMPARE((GridGeometry{1000, 10, 50}.positionsIn(top, bottom)), (std::pair{first, end}));
}

void GridGeometryTest::aWidthThatIsTooSmallGivesNoUpsideDownTiles()
{
    QCOMPARE((GridGeometry{0, 4, 50}.tileSize()), QSize(10, 60));
}

QTEST_APPLESS_MAIN(GridGeometryTest)
#include "GridGeometryTest.moc"
