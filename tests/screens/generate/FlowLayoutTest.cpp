#include "screens/generate/FlowLayout.h"

#include "screens/generate/FlowLayoutHost.h"
#include "support/ScreenTest.h"

#include <QRandomGenerator>
#include <QVBoxLayout>

#include <algorithm>
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
    void childrenFillRows_data()
    {
        QTest::addColumn<double>("limit");
        QTest::addColumn<QList<QSizeF>>("children");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QList<QPointF>>("corners");
        using Sizes = QList<QSizeF>;
        using Corners = QList<QPointF>;
        const QSizeF brick{40, 20};
        const Sizes two{brick, brick};
        QTest::newRow("none") << 320.0 << Sizes{} << QSizeF{320, 0} << Corners{};
        QTest::newRow("none, no limit") << FlowLayout::unlimited << Sizes{} << QSizeF{0, 0} << Corners{};
        QTest::newRow("no limit: a gap follows the last")
            << infinity << Sizes{{40, 10}, {60, 30}, {20, 20}} << QSizeF{40 + 60 + 20 + 3 * 8, 30}
            << Corners{{0, 0}, {48, 0}, {116, 0}};
        QTest::newRow("no size") << infinity << Sizes{{0, 0}, {0, 0}} << QSizeF{16, 0}
                                 << Corners{{0, 0}, {8, 0}};
        QTest::newRow("narrower than the limit")
            << 500.0 << Sizes{brick} << QSizeF{500, 20} << Corners{{0, 0}};
        QTest::newRow("up to the limit") << 88.0 << two << QSizeF{88, 20} << Corners{{0, 0}, {48, 0}};
        QTest::newRow("beyond it") << 87.0 << Sizes{brick, {40, 24}} << QSizeF{87, 20 + 8 + 24}
                                   << Corners{{0, 0}, {0, 28}};
        QTest::newRow("wider than it: below an empty row")
            << 100.0 << Sizes{{200, 30}} << QSizeF{100, 8 + 30} << Corners{{0, 8}};
        QTest::newRow("limit of nothing") << 0.0 << Sizes{brick} << QSizeF{0, 28} << Corners{{0, 8}};
        QTest::newRow("wider than it, between others")
            << 100.0 << Sizes{brick, {200, 30}, brick} << QSizeF{100, 20 + 8 + 30 + 8 + 20}
            << Corners{{0, 0}, {0, 28}, {0, 66}};
        QTest::newRow("as high as the highest")
            << 100.0 << Sizes{{40, 10}, {40, 50}, brick, {40, 5}} << QSizeF{100, 50 + 8 + 20}
            << Corners{{0, 0}, {48, 0}, {0, 58}, {48, 58}};
        QTest::newRow("limit that is no number")
            << notANumber << two << QSizeF{96, 20} << Corners{{0, 0}, {48, 0}};
        QTest::newRow("height that is no number")
            << 200.0 << Sizes{brick, {40, notANumber}} << QSizeF{200, 20} << Corners{{0, 0}, {48, 0}};
    }

    void childrenFillRows()
    {
        QFETCH(const double, limit);
        QFETCH(const QList<QSizeF>, children);
        QFETCH(const QSizeF, size);
        QFETCH(const QList<QPointF>, corners);
        const FlowLayout layout;
        QCOMPARE(layout.sizeThatFits(limit, children), size);
        QCOMPARE(layout.placeSubviews({0, 0, limit, size.height()}, children), corners);
        // Places count from the corner of the bounds.
        QList<QPointF> moved;
        for (const QPointF &corner : corners) {
            moved.append(corner + QPointF{100, 50});
        }
        QCOMPARE(layout.placeSubviews({100, 50, limit, size.height()}, children), moved);
    }

    void theGapsCanBeOthers()
    {
        const FlowLayout layout{.spacing = 10, .lineSpacing = 4};
        const QList<QSizeF> children{{40, 10}, {40, 50}, {40, 20}, {40, 5}};
        QCOMPARE(layout.sizeThatFits(100, children), QSizeF(100, 50 + 4 + 20));
        const QList<QPointF> expected{{0, 0}, {50, 0}, {0, 54}, {50, 54}};
        QCOMPARE(layout.placeSubviews({0, 0, 100, 74}, children), expected);
    }

    void aChildWithoutANumberForItsWidthStaysInItsRow()
    {
        const FlowLayout layout;
        // From there on the row's end is no number either, so nothing leaves the row any more.
        const QList<QSizeF> children{{40, 20}, {notANumber, 30}, {40, 20}};
        QCOMPARE(layout.sizeThatFits(60, children), QSizeF(60, 30));
        const QList<QPointF> corners = layout.placeSubviews({0, 0, 60, 30}, children);
        QCOMPARE(corners.at(1), QPointF(48, 0));
        QCOMPARE(corners.at(2).y(), 0.0);
        QVERIFY(std::isnan(corners.at(2).x()));
    }

    void bothPassesBreakEveryRowWhereItIsFull()
    {
        QRandomGenerator random{20240601};
        const FlowLayout layout;
        for (int round = 0; round < 500; ++round) {
            QList<QSizeF> children;
            for (int i = random.bounded(1, 20); i > 0; --i) {
                children.append({1.0 * random.bounded(10, 120), 1.0 * random.bounded(10, 40)});
            }
            const double width = random.bounded(20, 400);
            const QSizeF measured = layout.sizeThatFits(width, children);
            const QList<QPointF> corners = layout.placeSubviews({{0, 0}, measured}, children);
            double bottom = 0;
            // The row of the child before, as far as it is known.
            double rowTop = 0;
            double rowEnd = 0;
            double rowHeight = 0;
            for (qsizetype i = 0; i < children.size(); ++i) {
                const QRectF child{corners.at(i), children.at(i)};
                const bool fits = rowEnd + child.width() <= width;
                const double nextTop = rowTop + rowHeight + layout.lineSpacing;
                QCOMPARE(child.topLeft(), fits ? QPointF(rowEnd, rowTop) : QPointF(0, nextTop));
                rowHeight = std::max(fits ? rowHeight : 0.0, child.height());
                rowTop = child.top();
                rowEnd = child.right() + layout.spacing;
                bottom = std::max(bottom, child.bottom());
            }
            QCOMPARE(bottom, measured.height());
        }
    }

    void widgetsStandAtTheirIdealSizes()
    {
        Wall wall{{{40, 20}, {60, 30}}};
        const QLayout *flow = wall.row->layout();
        QCOMPARE(flow->sizeHint(), QSize(116, 30));
        QCOMPARE(flow->minimumSize(), QSize(60, 30));
        QCOMPARE(flow->heightForWidth(100), 58);
        QCOMPARE(flow->heightForWidth(108), 30);
        showWindow(wall.window, {300, 200});
        QCOMPARE(wall.place(0), QRect(0, 0, 40, 20));
        QCOMPARE(wall.place(1), QRect(48, 0, 60, 30));
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

    void widgetsCanBeTakenOut()
    {
        const Wall wall{{{40, 20}, {60, 30}}};
        QLayout *flow = wall.row->layout();
        QCOMPARE(flow->takeAt(2), nullptr);
        QCOMPARE(flow->itemAt(-1), nullptr);
        const std::unique_ptr<QLayoutItem> taken{flow->takeAt(0)};
        QCOMPARE(taken->widget(), wall.bricks.at(0));
        QCOMPARE(flow->count(), 1);
        QCOMPARE(flow->itemAt(0)->widget(), wall.bricks.at(1));
    }
};

QUILMORA_TEST(FlowLayoutTest, runScreenTest)

#include "FlowLayoutTest.moc"
