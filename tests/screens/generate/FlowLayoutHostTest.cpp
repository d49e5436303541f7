#include "screens/generate/FlowLayoutHost.h"

#include "support/ScreenTest.h"

#include <QVBoxLayout>

using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// A child whose ideal size can change.
class Brick final : public QWidget
{
public:
    Brick(QSize size, QWidget *parent) : QWidget{parent}, ideal{size} {}
    QSize sizeHint() const override { return ideal; }
    void become(QSize size)
    {
        ideal = size;
        updateGeometry();
    }

private:
    QSize ideal;
};

/// Bricks in a wrapping row above a foot.
struct Wall {
    explicit Wall(const QList<QSize> &sizes)
    {
        auto *column = new QVBoxLayout{&window};
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(0);
        auto *flow = new FlowLayoutHost{row};
        for (const QSize size : sizes) {
            bricks.append(new Brick{size, row});
            flow->addWidget(bricks.last());
        }
        column->addWidget(row);
        column->addWidget(foot);
        column->addStretch();
        foot->setFixedHeight(10);
    }

    QWidget window;
    QWidget *row = new QWidget{&window};
    QWidget *foot = new QWidget{&window};
    QList<Brick *> bricks;
};

} // namespace

class FlowLayoutHostTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void childrenStandInARowAtTheirIdealSizes();
    void childrenWrapWhenTheWindowNarrows();
    void whatStandsBelowMovesWithTheRows();
    void aChildThatGrowsMovesTheOnesAfterIt();
    void theHintIsOneRowAndTheMinimumOneChild();
    void childrenCanBeTakenOut();
};

void FlowLayoutHostTest::childrenStandInARowAtTheirIdealSizes()
{
    Wall wall{{{40, 20}, {60, 30}}};
    showWindow(wall.window, {300, 200});
    QCOMPARE(wall.bricks.at(0)->geometry(), QRect(0, 0, 40, 20));
    QCOMPARE(wall.bricks.at(1)->geometry(), QRect(48, 0, 60, 30));
}

void FlowLayoutHostTest::childrenWrapWhenTheWindowNarrows()
{
    Wall wall{{{40, 20}, {40, 20}, {40, 20}}};
    showWindow(wall.window, {136, 200});
    QCOMPARE(wall.bricks.at(2)->geometry(), QRect(96, 0, 40, 20));
    wall.window.resize(135, 200);
    QTRY_COMPARE(wall.bricks.at(2)->geometry(), QRect(0, 28, 40, 20));
    wall.window.resize(87, 200);
    QTRY_COMPARE(wall.bricks.at(2)->geometry(), QRect(0, 56, 40, 20));
    wall.window.resize(136, 200);
    QTRY_COMPARE(wall.bricks.at(2)->geometry(), QRect(96, 0, 40, 20));
}

void FlowLayoutHostTest::whatStandsBelowMovesWithTheRows()
{
    Wall wall{{{40, 20}, {40, 20}, {40, 20}}};
    showWindow(wall.window, {136, 200});
    QCOMPARE(wall.row->height(), 20);
    QCOMPARE(wall.foot->y(), 20);
    wall.window.resize(100, 200);
    QTRY_COMPARE(wall.row->height(), 48);
    QTRY_COMPARE(wall.foot->y(), 48);
}

void FlowLayoutHostTest::aChildThatGrowsMovesTheOnesAfterIt()
{
    Wall wall{{{40, 20}, {40, 20}}};
    showWindow(wall.window, {100, 200});
    wall.bricks.at(0)->become({50, 20});
    QTRY_COMPARE(wall.bricks.at(0)->width(), 50);
    QTRY_COMPARE(wall.bricks.at(1)->geometry(), QRect(58, 0, 40, 20));
    wall.bricks.at(0)->become({60, 30});
    QTRY_COMPARE(wall.bricks.at(1)->geometry(), QRect(0, 38, 40, 20));
}

void FlowLayoutHostTest::theHintIsOneRowAndTheMinimumOneChild()
{
    const Wall wall{{{40, 20}, {60, 30}}};
    const QLayout *flow = wall.row->layout();
    QCOMPARE(flow->sizeHint(), QSize(116, 30));
    QCOMPARE(flow->minimumSize(), QSize(60, 30));
    QCOMPARE(flow->heightForWidth(100), 58);
    QCOMPARE(flow->heightForWidth(108), 30);
}

void FlowLayoutHostTest::childrenCanBeTakenOut()
{
    const Wall wall{{{40, 20}, {60, 30}}};
    QLayout *flow = wall.row->layout();
    QCOMPARE(flow->count(), 2);
    QCOMPARE(flow->takeAt(2), nullptr);
    QCOMPARE(flow->itemAt(-1), nullptr);
    const std::unique_ptr<QLayoutItem> taken{flow->takeAt(0)};
    QCOMPARE(taken->widget(), wall.bricks.at(0));
    QCOMPARE(flow->count(), 1);
    QCOMPARE(flow->itemAt(0)->widget(), wall.bricks.at(1));
}

int main(int argc, char *argv[])
{
    return runScreenTest<FlowLayoutHostTest>(argc, argv);
}

#include "FlowLayoutHostTest.moc"
