#include "screens/history/HistoryThumbnail.h"

#include "HistoryScreen.h"
#include "screens/common/Fonts.h"
#include "screens/common/Theme.h"
#include "support/ScreenCapture.h"

#include <QDateTime>
#include <QFontMetrics>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

class HistoryThumbnailTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void theTimeIsMonthDayAndClockWithoutAYear();
    void aLandscapeCoverIsShownWholeBetweenBands();
    void aPortraitCoverIsShownWholeBetweenBands();
    void aSmallPictureIsEnlargedToTheSquare();
    void theSquareHasRoundedCornersAndAnOutline();
    void aMissingPictureShowsTheFaintPlaceholderAndTheRestStays();
    void anEmptyModelLeavesTheLeftSideBlank();
    void aLongModelNameLeavesRoomForTheTime();
    void modelAndTimeHaveDigitsOfOneHeight();
    void aPromptTakesTwoLinesAtMost();
    void aPromptIsPlainText();

private:
    QRect squareOf(int position)
    {
        const QRect tile = screen->tileRect(position);
        return {tile.topLeft(), QSize{tile.width(), tile.width()}};
    }
    /// The part of the tile below its square.
    QImage texts(int position)
    {
        const QRect tile = screen->tileRect(position);
        return screen->picture().copy(tile.adjusted(0, tile.width(), 0, 0));
    }

    std::unique_ptr<HistoryScreen> screen;
};

void HistoryThumbnailTest::theTimeIsMonthDayAndClockWithoutAYear()
{
    const auto seconds = [](int year, int minute) {
        return static_cast<double>(QDateTime{{year, 3, 5}, {9, minute, 59}}.toSecsSinceEpoch());
    };
    screen->addRow(u"p"_s, {}, seconds(2025, 7), {});
    screen->addRow(u"p"_s, {}, seconds(2024, 7), {});
    screen->addRow(u"p"_s, {}, seconds(2023, 8), {});
    screen->open();
    QCOMPARE(screen->tile(0)->text(QAccessible::Description), u"03-05 09:07"_s);
    // What is drawn depends on the minute, not on the year.
    QCOMPARE(texts(1), texts(0));
    QVERIFY(texts(2) != texts(0));
}

void HistoryThumbnailTest::aLandscapeCoverIsShownWholeBetweenBands()
{
    screen->addCover(u"a.png"_s, {1600, 900}, 1000, Qt::red);
    screen->open();
    const QImage picture = screen->picture();
    const QRect square = squareOf(0);
    const int height = qRound(square.width() * 900.0 / 1600.0);
    const QColor ground = themeColor(ColorRole::controlBackground);
    QVERIFY(isClose(colorAt(picture, square.center()), Qt::red));
    QVERIFY(isClose(colorAt(picture, {square.left() + 3.0, square.center().y() * 1.0}), Qt::red));
    QVERIFY(isClose(colorAt(picture, {square.right() - 3.0, square.center().y() * 1.0}), Qt::red));
    const double band = (square.width() - height) / 2.0;
    QVERIFY(isClose(colorAt(picture, {square.center().x() * 1.0, square.top() + band - 3}), ground));
    QVERIFY(isClose(colorAt(picture, {square.center().x() * 1.0, square.top() + band + 3}), Qt::red));
    QVERIFY(isClose(colorAt(picture, {square.center().x() * 1.0, square.bottom() - band + 4}), ground));
}

void HistoryThumbnailTest::aPortraitCoverIsShownWholeBetweenBands()
{
    screen->addCover(u"a.png"_s, {900, 1600}, 1000, Qt::red);
    screen->open();
    const QImage picture = screen->picture();
    const QRect square = squareOf(0);
    const double band = square.width() * (1 - 900.0 / 1600.0) / 2;
    const QColor ground = themeColor(ColorRole::controlBackground);
    QVERIFY(isClose(colorAt(picture, {square.left() + band - 3, square.center().y() * 1.0}), ground));
    QVERIFY(isClose(colorAt(picture, {square.left() + band + 3, square.center().y() * 1.0}), Qt::red));
    QVERIFY(isClose(colorAt(picture, {square.right() - band + 4, square.center().y() * 1.0}), ground));
    QVERIFY(isClose(colorAt(picture, {square.center().x() * 1.0, square.top() + 3.0}), Qt::red));
}

void HistoryThumbnailTest::aSmallPictureIsEnlargedToTheSquare()
{
    screen->addCover(u"a.png"_s, {8, 8}, 1000, Qt::red);
    screen->open();
    const QRect inside = squareOf(0).adjusted(8, 8, -8, -8);
    QCOMPARE(countOf(screen->picture(), Qt::red, inside), inside.width() * inside.height());
}

void HistoryThumbnailTest::theSquareHasRoundedCornersAndAnOutline()
{
    screen->addCover(u"a.png"_s, {100, 100}, 1000, Qt::white);
    screen->open();
    const QImage picture = screen->picture();
    const QRect square = squareOf(0);
    // Outside the corner nothing is drawn; the outline is grey at 20 % over the picture.
    QVERIFY(colorAt(picture, square.topLeft()).alpha() < 30);
    QVERIFY(colorAt(picture, square.bottomRight()).alpha() < 30);
    const QColor grey = themeColor(ColorRole::grey);
    const auto over = [](int component) {
        return qRound(255 + (component - 255) * 0.2);
    };
    const QColor line{over(grey.red()), over(grey.green()), over(grey.blue())};
    QVERIFY(isClose(colorAt(picture, {square.left() * 1.0, square.center().y() * 1.0}), line));
    QVERIFY(isClose(colorAt(picture, {square.left() + 1.0, square.center().y() * 1.0}), Qt::white));
}

void HistoryThumbnailTest::aMissingPictureShowsTheFaintPlaceholderAndTheRestStays()
{
    const QString file = screen->addCover(u"a.png"_s, {100, 100}, 1000, Qt::red);
    screen->open();
    const QImage textsBefore = texts(0);
    QVERIFY(QFile::remove(file));
    QVERIFY(screen->waitUntilFilled());
    const QImage picture = screen->picture();
    QCOMPARE(countOf(picture, Qt::red), 0);
    const QRect middle{squareOf(0).center() - QPoint{22, 22}, QSize{44, 44}};
    const QColor ground = themeColor(ColorRole::controlBackground);
    const int drawn = middle.width() * middle.height() - countOf(picture, ground, middle);
    QVERIFY2(drawn > 50, qPrintable(QString::number(drawn)));
    const QRect around = squareOf(0).adjusted(10, 10, -10, -60);
    QCOMPARE(countOf(picture, ground, around.intersected(QRect{around.topLeft(), QSize{around.width(), 40}})),
             around.width() * 40);
    QCOMPARE(texts(0), textsBefore);
}

void HistoryThumbnailTest::anEmptyModelLeavesTheLeftSideBlank()
{
    screen->addRow(u"p"_s, {}, 1000, {});
    screen->addRow(u"p"_s, {}, 1000 - 60 * 60 * 24 * 365, u"model"_s);
    screen->open();
    // Below the one line of prompt.
    const int footerTop = 6 + QFontMetrics{systemFont(12)}.height() + 2;
    const QRect left{0, footerTop, 80, texts(0).height() - footerTop};
    QCOMPARE(countOf(texts(0), QColor{0, 0, 0, 0}, left), left.width() * left.height());
    QVERIFY(countOf(texts(1), QColor{0, 0, 0, 0}, left) < left.width() * left.height());
}

void HistoryThumbnailTest::aLongModelNameLeavesRoomForTheTime()
{
    screen->addRow(u"p"_s, {}, 1000, {});
    screen->addRow(u"p"_s, {}, 1000, u"doubao-seedream-4-0-250828-"_s.repeated(9));
    screen->open();
    const int timeWidth = 60;
    const QRect right{texts(0).width() - timeWidth, 0, timeWidth, texts(0).height()};
    QCOMPARE(texts(1).copy(right), texts(0).copy(right));
}

void HistoryThumbnailTest::modelAndTimeHaveDigitsOfOneHeight()
{
    screen->addRow(u"p\np"_s, {}, static_cast<double>(QDateTime{{2025, 8, 8}, {8, 8, 8}}.toSecsSinceEpoch()),
                   u"a-8888"_s);
    screen->open();
    const int lineHeight = QFontMetrics{systemFont(10)}.height();
    const QImage below = texts(0);
    const QImage footer = below.copy(0, below.height() - lineHeight, below.width(), lineHeight);
    const auto rowsOfInk = [](const QImage &part) {
        QList<int> rows;
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width() && (rows.isEmpty() || rows.constLast() != y); ++x) {
                if (part.pixelColor(x, y).alpha() > 20) {
                    rows.append(y);
                }
            }
        }
        return rows;
    };
    const int half = footer.width() / 2;
    const QList<int> modelRows = rowsOfInk(footer.copy(0, 0, half, lineHeight));
    QVERIFY(!modelRows.isEmpty());
    QCOMPARE(rowsOfInk(footer.copy(half, 0, half, lineHeight)), modelRows);
}

void HistoryThumbnailTest::aPromptTakesTwoLinesAtMost()
{
    screen->addRow(u"一\n二"_s, {}, 1000);
    screen->addRow(u"一\n二\n三\n四"_s, {}, 999);
    screen->addRow(QString{5000, u'字'}, {}, 998);
    screen->open();
    QVERIFY(texts(1) != texts(0));
    // Below two lines of prompt and the footer the tile ends.
    for (int position = 0; position < 3; ++position) {
        const QRect tile = screen->tileRect(position);
        const QRect below{tile.left(), tile.bottom() + 1, tile.width(), 16};
        QCOMPARE(countOf(screen->picture(), QColor{0, 0, 0, 0}, below), below.width() * below.height());
    }
    const QRect footer{0, texts(0).height() - 14, texts(0).width(), 14};
    QVERIFY(countOf(texts(2), QColor{0, 0, 0, 0}, footer) < footer.width() * footer.height());
}

void HistoryThumbnailTest::aPromptIsPlainText()
{
    screen->addRow(u"<b>x</b>"_s, {}, 1000);
    screen->addRow(u"x"_s, {}, 1000);
    screen->open();
    QVERIFY(texts(0) != texts(1));
    QCOMPARE(
        screen->tile(0)->text(QAccessible::Name).size() + screen->tile(1)->text(QAccessible::Name).size(), 9);
}

int main(int argc, char **argv)
{
    return runScreenTest<HistoryThumbnailTest>(argc, argv);
}
#include "HistoryThumbnailTest.moc"
