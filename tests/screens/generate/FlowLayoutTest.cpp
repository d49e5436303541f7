#include "screens/generate/FlowLayout.h"

#include "support/ScreenTest.h"

#include <QVBoxLayout>

#include <cmath>
#include <limits>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A child whose ideal size can change.
class Brick final : public QWidget
{
public:
    Brick(QSize size, QWidget *parent) : QWidget{parent}, m_ideal{size} {}
    QSize sizeHint() const override { return m_ideal; }
    void become(QSize size)
    {
        m_ideal = size;
        updateGeometry();
    }

private:
    QSize m_ideal;
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
    QRect place(qsizetype index) const { return bricks.at(index)->geometry(); }

    QWidget window;
    QWidget *row = new QWidget{&window};
    QWidget *foot = new QWidget{&window};
    QList<Brick *> bricks;
};

} // namespace

/// Children in rows that are full: the computation, and the layout of widgets that uses it.
class FlowLayoutTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void childrenFillRows()
    {
        struct Row {
            double limit;
            QList<QSizeF> children;
            QSizeF size;
            QList<QPointF> corners;
        };
        const QSizeF brick{40, 20};
        const QList<QSizeF> two{brick, brick};
        const QList<Row> rows{
            {320, {}, {320, 0}, {}},
            {FlowLayout::unlimited, {}, {0, 0}, {}},
            // Without a limit a gap follows the last child.
            {infinity,
             {{40, 10}, {60, 30}, {20, 20}},
             {40 + 60 + 20 + 3 * 8, 30},
             {{0, 0}, {48, 0}, {116, 0}}},
            {infinity, {{0, 0}, {0, 0}}, {16, 0}, {{0, 0}, {8, 0}}},
            {500, {brick}, {500, 20}, {{0, 0}}},
            // Up to the limit and beyond it.
            {88, two, {88, 20}, {{0, 0}, {48, 0}}},
            {87, {brick, {40, 24}}, {87, 20 + 8 + 24}, {{0, 0}, {0, 28}}},
            // A child wider than the limit stands below an empty row.
            {100, {{200, 30}}, {100, 8 + 30}, {{0, 8}}},
            {0, {brick}, {0, 28}, {{0, 8}}},
            {100, {brick, {200, 30}, brick}, {100, 20 + 8 + 30 + 8 + 20}, {{0, 0}, {0, 28}, {0, 66}}},
            // A row is as high as its highest child.
            {100,
             {{40, 10}, {40, 50}, brick, {40, 5}},
             {100, 50 + 8 + 20},
             {{0, 0}, {48, 0}, {0, 58}, {48, 58}}},
            {notANumber, two, {96, 20}, {{0, 0}, {48, 0}}},
            {200, {brick, {40, notANumber}}, {200, 20}, {{0, 0}, {48, 0}}},
        };
        const FlowLayout layout;
        for (const auto &[limit, children, size, corners] : rows) {
            QCOMPARE(layout.sizeThatFits(limit, children), size);
            QCOMPARE(layout.placeSubviews({0, 0, limit, size.height()}, children), corners);
            // Places count from the corner of the bounds.
            QList<QPointF> moved;
            for (const QPointF &corner : corners) {
                moved.append(corner + QPointF{100, 50});
            }
            QCOMPARE(layout.placeSubviews({100, 50, limit, size.height()}, children), moved);
        }
    }

    void theGapsCanBeOthersAndAWidthNoNumber()
    {
        const FlowLayout other{.spacing = 10, .lineSpacing = 4};
        const QList<QSizeF> four{{40, 10}, {40, 50}, {40, 20}, {40, 5}};
        QCOMPARE(other.sizeThatFits(100, four), QSizeF(100, 50 + 4 + 20));
        QCOMPARE(other.placeSubviews({0, 0, 100, 74}, four),
                 (QList<QPointF>{{0, 0}, {50, 0}, {0, 54}, {50, 54}}));
        const FlowLayout layout;
        // From there on the row's end is no number either, so nothing leaves the row any more.
        const QList<QSizeF> children{{40, 20}, {notANumber, 30}, {40, 20}};
        QCOMPARE(layout.sizeThatFits(60, children), QSizeF(60, 30));
        const QList<QPointF> corners = layout.placeSubviews({0, 0, 60, 30}, children);
        QCOMPARE(corners.at(1), QPointF(48, 0));
        QCOMPARE(corners.at(2).y(), 0.0);
        QVERIFY(std::isnan(corners.at(2).x()));
    }

    void widgetsStandAtTheirIdealSizes()
    {
        Wall wall{{{40, 20}, {60, 30}}};
        QLayout *flow = wall.row->layout();
        QCOMPARE(flow->sizeHint(), QSize(116, 30));
        QCOMPARE(flow->minimumSize(), QSize(60, 30));
        QCOMPARE(flow->heightForWidth(100), 58);
        QCOMPARE(flow->heightForWidth(108), 30);
        showWindow(wall.window, {300, 200});
        QCOMPARE(wall.place(0), QRect(0, 0, 40, 20));
        QCOMPARE(wall.place(1), QRect(48, 0, 60, 30));
        // They can be taken out.
        QCOMPARE(flow->takeAt(2), nullptr);
        QCOMPARE(flow->itemAt(-1), nullptr);
        const std::unique_ptr<QLayoutItem> taken{flow->takeAt(0)};
        QCOMPARE(taken->widget(), wall.bricks.at(0));
        QCOMPARE(flow->count(), 1);
        QCOMPARE(flow->itemAt(0)->widget(), wall.bricks.at(1));
    }

    void widgetsWrapAndMoveWhatStandsBelow()
    {
        Wall wall{{{40, 20}, {40, 20}, {40, 20}}};
        showWindow(wall.window, {136, 200});
        QCOMPARE(wall.place(2), QRect(96, 0, 40, 20));
        QCOMPARE(wall.foot->y(), 20);
        const QList<std::pair<int, QPoint>> steps{{135, {0, 28}}, {87, {0, 56}}, {136, {96, 0}}};
        for (const auto &[width, corner] : steps) {
            wall.window.resize(width, 200);
            QTRY_COMPARE(wall.place(2), QRect(corner, QSize(40, 20)));
            QTRY_COMPARE(wall.row->height(), corner.y() + 20);
            QTRY_COMPARE(wall.foot->y(), corner.y() + 20);
        }
    }

    void aWidgetThatGrowsMovesTheOnesAfterIt()
    {
        Wall wall{{{40, 20}, {40, 20}}};
        showWindow(wall.window, {100, 200});
        wall.bricks.at(0)->become({50, 20});
        QTRY_COMPARE(wall.place(0).width(), 50);
        QTRY_COMPARE(wall.place(1), QRect(58, 0, 40, 20));
        wall.bricks.at(0)->become({60, 30});
        QTRY_COMPARE(wall.place(1), QRect(0, 38, 40, 20));
    }
};

QUILMORA_TEST(FlowLayoutTest, runScreenTest)
#include "FlowLayoutTest.moc"
