#include "screens/generate/FlowLayout.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace quilmora;

namespace
{

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

} // namespace

class FlowLayoutTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theGapsAreEightUnlessSaidOtherwise();
    void noChildrenTakeTheLimitsWidthAndNoHeight();
    void withoutALimitAllChildrenLieInOneRowWithATrailingGap();
    void aChildThatEndsExactlyAtTheLimitStays();
    void aChildThatEndsBeyondTheLimitStartsARow();
    void aChildWiderThanTheLimitGoesBelowAnEmptyRow();
    void aWideChildAfterOthersStartsItsRowOnce();
    void aRowIsAsHighAsItsTallestChild();
    void placesCountFromTheCornerOfTheBounds();
    void theMeasuredWidthIsTheLimitEvenWhenChildrenAreNarrower();
    void aChildWithoutANumberForItsWidthStaysInItsRow();
    void aLimitThatIsNoNumberBreaksNoRow();
    void aHeightThatIsNoNumberDoesNotCount();
    void childrenOfNoSizeStillTakeTheirGap();
    void bothPassesBreakEveryRowWhereItIsFull();
};

void FlowLayoutTest::theGapsAreEightUnlessSaidOtherwise()
{
    const FlowLayout layout;
    QCOMPARE(layout.spacing, 8.0);
    QCOMPARE(layout.lineSpacing, 8.0);
}

void FlowLayoutTest::noChildrenTakeTheLimitsWidthAndNoHeight()
{
    const FlowLayout layout;
    QCOMPARE(layout.sizeThatFits(320, {}), QSizeF(320, 0));
    QCOMPARE(layout.sizeThatFits(FlowLayout::unlimited, {}), QSizeF(0, 0));
    QVERIFY(layout.placeSubviews({5, 6, 320, 100}, {}).isEmpty());
}

void FlowLayoutTest::withoutALimitAllChildrenLieInOneRowWithATrailingGap()
{
    const FlowLayout layout{.spacing = 5, .lineSpacing = 3};
    const QList<QSizeF> children{{40, 10}, {60, 30}, {20, 20}};
    QCOMPARE(layout.sizeThatFits(infinity, children), QSizeF(40 + 60 + 20 + 3 * 5, 30));
    const QList<QPointF> expected{{0, 0}, {45, 0}, {110, 0}};
    QCOMPARE(layout.placeSubviews({0, 0, infinity, 30}, children), expected);
}

void FlowLayoutTest::aChildThatEndsExactlyAtTheLimitStays()
{
    const FlowLayout layout;
    const QList<QSizeF> children{{40, 20}, {40, 20}};
    QCOMPARE(layout.sizeThatFits(88, children), QSizeF(88, 20));
    const QList<QPointF> expected{{0, 0}, {48, 0}};
    QCOMPARE(layout.placeSubviews({0, 0, 88, 20}, children), expected);
}

void FlowLayoutTest::aChildThatEndsBeyondTheLimitStartsARow()
{
    const FlowLayout layout;
    const QList<QSizeF> children{{40, 20}, {40, 24}};
    QCOMPARE(layout.sizeThatFits(87, children), QSizeF(87, 20 + 8 + 24));
    const QList<QPointF> expected{{0, 0}, {0, 28}};
    QCOMPARE(layout.placeSubviews({0, 0, 87, 52}, children), expected);
}

void FlowLayoutTest::aChildWiderThanTheLimitGoesBelowAnEmptyRow()
{
    const FlowLayout layout;
    const QList<QSizeF> children{{200, 30}};
    QCOMPARE(layout.sizeThatFits(100, children), QSizeF(100, 8 + 30));
    const QList<QPointF> expected{{0, 8}};
    QCOMPARE(layout.placeSubviews({0, 0, 100, 38}, children), expected);
}

void FlowLayoutTest::aWideChildAfterOthersStartsItsRowOnce()
{
    const FlowLayout layout;
    const QList<QSizeF> children{{40, 20}, {200, 30}, {40, 20}};
    QCOMPARE(layout.sizeThatFits(100, children), QSizeF(100, 20 + 8 + 30 + 8 + 20));
    const QList<QPointF> expected{{0, 0}, {0, 28}, {0, 66}};
    QCOMPARE(layout.placeSubviews({0, 0, 100, 86}, children), expected);
}

void FlowLayoutTest::aRowIsAsHighAsItsTallestChild()
{
    const FlowLayout layout{.spacing = 10, .lineSpacing = 4};
    const QList<QSizeF> children{{40, 10}, {40, 50}, {40, 20}, {40, 5}};
    QCOMPARE(layout.sizeThatFits(100, children), QSizeF(100, 50 + 4 + 20));
    // Shorter children keep their top edge on the row's.
    const QList<QPointF> expected{{0, 0}, {50, 0}, {0, 54}, {50, 54}};
    QCOMPARE(layout.placeSubviews({0, 0, 100, 74}, children), expected);
}

void FlowLayoutTest::placesCountFromTheCornerOfTheBounds()
{
    const FlowLayout layout;
    const QList<QSizeF> children{{40, 20}, {40, 20}, {40, 20}};
    const QList<QPointF> expected{{100, 50}, {148, 50}, {100, 78}};
    QCOMPARE(layout.placeSubviews({100, 50, 88, 48}, children), expected);
}

void FlowLayoutTest::theMeasuredWidthIsTheLimitEvenWhenChildrenAreNarrower()
{
    QCOMPARE(FlowLayout{}.sizeThatFits(500, {{40, 20}}).width(), 500.0);
    QCOMPARE(FlowLayout{}.sizeThatFits(0, {{40, 20}}), QSizeF(0, 28));
}

void FlowLayoutTest::aChildWithoutANumberForItsWidthStaysInItsRow()
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

void FlowLayoutTest::aLimitThatIsNoNumberBreaksNoRow()
{
    const FlowLayout layout;
    const QList<QSizeF> children{{40, 20}, {40, 20}};
    QCOMPARE(layout.sizeThatFits(notANumber, children), QSizeF(96, 20));
    const QList<QPointF> expected{{0, 0}, {48, 0}};
    QCOMPARE(layout.placeSubviews({0, 0, notANumber, 20}, children), expected);
}

void FlowLayoutTest::aHeightThatIsNoNumberDoesNotCount()
{
    const QList<QSizeF> children{{40, 20}, {40, notANumber}};
    QCOMPARE(FlowLayout{}.sizeThatFits(200, children), QSizeF(200, 20));
}

void FlowLayoutTest::childrenOfNoSizeStillTakeTheirGap()
{
    QCOMPARE(FlowLayout{}.sizeThatFits(infinity, {{0, 0}, {0, 0}}), QSizeF(16, 0));
}

void FlowLayoutTest::bothPassesBreakEveryRowWhereItIsFull()
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

QTEST_GUILESS_MAIN(FlowLayoutTest)
#include "FlowLayoutTest.moc"
