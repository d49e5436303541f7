#include "screens/history/HistoryThumbnail.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/HistoryScreen.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QDateTime>
#include <QFile>
#include <QFontMetrics>
#include <QLabel>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

namespace {

/// A moment of the fifth of March.
double moment(int year = 2025, int minute = 7)
{
    return static_cast<double>(QDateTime{{year, 3, 5}, {9, minute, 59}}.toSecsSinceEpoch());
}

} // namespace

/// The numbers of the history screen and what its tiles show, read from what is drawn.
class HistoryMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void header()
    {
        m_screen->addCovers(1);
        m_screen->open();
        QCOMPARE(Drawing{m_screen->view.get()}.lookOf(texts::history),
                 Drawing::look(22, QFont::Bold, ColorRole::primaryText));
        const QRect title = placement::inWindow(accessible::find<QLabel>(&m_screen->window, texts::history));
        const QRect refresh = placement::inWindow(piece(texts::refresh));
        const QRect ground{0, 0, m_screen->window.width(), placement::inWindow(m_screen->grid()).top()};
        QCOMPARE(placement::padding(ground, title | refresh), u"32, 24, 32, 16"_s);
        QVERIFY(std::abs(title.center().y() - refresh.center().y()) <= 1);

        // What is seen of the texts lies on one line, too.
        const QImage picture = capture(&m_screen->window, 2);
        const auto middleOfInk = [&](const QRect &place) {
            const QImage part = picture.copy({place.topLeft() * 2, place.size() * 2});
            const QList<QPoint> rows = runs(part.height(), [&](int y) {
                const auto isDark = [](const QColor &pixel) {
                    return qGray(pixel.rgb()) < 100 && pixel.alpha() > 150;
                };
                return countIf(part, isDark, {0, y, part.width(), 1}) > 0;
            });
            return place.top() + (rows.constFirst().x() + rows.constLast().x() + rows.constLast().y()) / 4.0;
        };
        const QRect refreshText = refresh.adjusted(10 + 17 + 4, 2, -10, -2);
        QVERIFY2(std::abs(middleOfInk(title) - middleOfInk(refreshText)) <= 0.5,
                 qPrintable(u"%1, %2"_s.arg(middleOfInk(title)).arg(middleOfInk(refreshText))));
    }

    void refreshButton()
    {
        m_screen->open();
        QWidget *button = piece(texts::refresh);
        const Drawing drawn{button};
        const QColor primary = themeColor(ColorRole::primaryText);
        QCOMPARE(drawn.lookOf(texts::refresh), Drawing::look(13, QFont::Normal, primary));
        const QRectF symbol = drawn.symbol(u"arrow.clockwise"_s, 13, QFont::Normal, primary);
        QVERIFY(!symbol.isNull());
        QCOMPARE(qRound(drawn.placeOf(texts::refresh).left() - symbol.right()), 4);
    }

    void tilePlaces()
    {
        m_screen->addRow(u"<b>一行</b>"_s, {}, moment(), u"模型"_s);
        m_screen->addRow(u"甲\n乙\n丙"_s, {}, moment() - 60, u"型号"_s);
        m_screen->open();
        const Drawing drawn = grid();
        const QRect square = m_screen->squareRect(0);
        QCOMPARE(drawn.lookOf(u"<b>一行</b>"_s), Drawing::look(12, QFont::Normal, ColorRole::secondaryText));
        for (const QString &text : {u"模型"_s, u"03-05 09:07"_s}) {
            QCOMPARE(drawn.lookOf(text), Drawing::look(10, QFont::Normal, ColorRole::tertiaryText));
        }
        const QRectF prompt = drawn.placeOf(u"<b>一行</b>"_s);
        const QRectF model = drawn.placeOf(u"模型"_s);
        const QRectF time = drawn.placeOf(u"03-05 09:07"_s);
        QCOMPARE(qRound(prompt.left()), square.left());
        QCOMPARE(qRound(prompt.top()) - square.bottom() - 1, 6);
        QCOMPARE(qRound(model.top() - prompt.bottom()), 6);
        QCOMPARE(qRound(model.left()), square.left());
        QCOMPARE(qRound(time.right()), square.right() + 1);
        QVERIFY(std::abs(time.top() - model.top()) <= 1);
        // Two lines of prompt at most, the second with the mark of what is left out.
        QVERIFY(!drawn.placeOf(u"甲"_s).isNull());
        const QRectF second = drawn.placeOf(u"乙…"_s);
        QVERIFY(!second.isNull());
        QVERIFY(drawn.placeOf(u"丙"_s).isNull());
        QCOMPARE(qRound(drawn.placeOf(u"型号"_s).top() - second.bottom()), 6);
    }

    void rowsAreAsHighAsTheirHighestTile()
    {
        const QString twoLines = u"甲\n乙"_s;
        const QString long200 = u"长"_s.repeated(200);
        const QStringList prompts{u"一"_s,  u"一"_s, u"一"_s, u"一"_s, u"二"_s,
                                  twoLines, u"二"_s, u"二"_s, long200, u"三"_s};
        for (qsizetype position = 0; position < prompts.size(); ++position) {
            m_screen->addRow(prompts.at(position), {}, moment() - 60.0 * static_cast<double>(position));
        }
        m_screen->open();
        const int line = QFontMetrics{systemFont(12)}.height();
        const auto gapBelowRow = [this](int position) {
            return m_screen->tileRect(position + 4).top() - m_screen->tileRect(position).bottom() - 1;
        };
        QCOMPARE(gapBelowRow(0), 16);
        QCOMPARE(gapBelowRow(4), 16 + line);
        QCOMPARE(gapBelowRow(5), 16);
        QCOMPARE(m_screen->tileRect(8).height(), m_screen->tileRect(5).height());
        QCOMPARE(m_screen->tileRect(9).height(), m_screen->tileRect(0).height());
        // The tile ends with its footer.
        const QRect tile = m_screen->tileRect(0);
        QVERIFY(std::abs(grid().placeOf(u"模型"_s).bottom() - (tile.bottom() + 1)) <= 1);
    }

    void tileSquare()
    {
        m_screen->addRow(u"提示词"_s, {}, moment());
        m_screen->open();
        const QRect square = m_screen->squareRect(0);
        QCOMPARE(CornerShape(m_screen->grid()->viewport(), square).differenceFromContinuous(8), QString{});
        constexpr int ratio = 8;
        const QImage picture = capture(m_screen->grid()->viewport(), ratio);
        const int y = square.center().y() * ratio;
        const int left = square.left() * ratio;
        // Grey at 20 %, one wide.
        const QColor line = picture.pixelColor(left, y);
        QVERIFY2(isClose(line, themeColor(ColorRole::tileBorder)), qPrintable(text(line)));
        int width = 0;
        while (picture.pixelColor(left + width, y) == line) {
            ++width;
        }
        QCOMPARE(width, ratio);
        QCOMPARE(picture.pixelColor(left + 3 * ratio, y), QColor{Qt::white});
        QCOMPARE(picture.pixelColor(left - 1, y).alpha(), 0);
    }

    void halfOfTheOutlineLiesBesideTheGround()
    {
        // One pixel a point cannot be halved.
        for (const int ratio : {1, 2, 4}) {
            TileFrame frame{8};
            frame.prepare({100, 100}, 1, ratio);
            const QImage background = frame.background().toImage();
            const QImage outline = frame.outline().toImage();
            const int middle = background.height() / 2;
            for (int x = 0; x < 2 * ratio + 2; ++x) {
                QCOMPARE(background.pixelColor(x, middle).alpha(), x < std::max(1, ratio / 2) ? 0 : 255);
                QCOMPARE(outline.pixelColor(x, middle).alpha(), x < ratio ? 51 : 0);
            }
        }
    }

    void emptyView()
    {
        m_screen->open();
        const QColor tertiary = themeColor(ColorRole::tertiaryText);
        QWidget *title = piece(texts::noCovers);
        QWidget *hint = piece(texts::noCoversHint);
        QWidget *body = title->parentWidget();
        const Drawing drawn{body};
        QCOMPARE(drawn.lookOf(texts::noCovers), Drawing::look(16, QFont::Medium, ColorRole::secondaryText));
        QCOMPARE(drawn.lookOf(texts::noCoversHint), Drawing::look(13, QFont::Normal, tertiary));
        const QRectF symbol = drawn.symbol(u"photo.stack"_s, 50, QFont::Normal, tertiary);
        QVERIFY(!symbol.isNull());
        QCOMPARE(qRound(title->y() - symbol.bottom()), 12);
        QCOMPARE(placement::gapBelow(title, hint), 12);
        for (const QRectF &item : {symbol, QRectF{title->geometry()}, QRectF{hint->geometry()}}) {
            QVERIFY(placement::centredAcross(item, body->rect()));
        }
        QVERIFY(std::abs(symbol.top() - (body->height() - hint->geometry().bottom() - 1)) <= 1);
        QCOMPARE(body->geometry().bottom(), m_screen->view->rect().bottom());
    }

    void theTimeIsMonthDayAndClockWithoutAYear()
    {
        m_screen->addRow(u"p"_s, {}, moment(), {});
        m_screen->addRow(u"p"_s, {}, moment(2024), {});
        m_screen->addRow(u"p"_s, {}, moment(2023, 8), {});
        m_screen->open();
        QCOMPARE(m_screen->descriptionOf(0), u"03-05 09:07"_s);
        // What is drawn depends on the minute, not on the year.
        QCOMPARE(belowSquare(1), belowSquare(0));
        QVERIFY(belowSquare(2) != belowSquare(0));
    }

    void aCoverIsShownWholeBetweenBands()
    {
        const QList<QSize> sizes{{1600, 900}, {900, 1600}, {8, 8}};
        for (const QSize size : sizes) {
            m_screen->addCover(u"%1.png"_s.arg(size.width()), size, 1000 - size.width(), Qt::red);
        }
        m_screen->open();
        const QImage picture = m_screen->picture();
        // The row that is made last, with the smallest width, comes first.
        for (int position = 0; position < sizes.size(); ++position) {
            const QSizeF size = sizes.at(sizes.size() - 1 - position);
            const QRectF square = m_screen->squareRect(position);
            const QSizeF shown = size.scaled(square.size(), Qt::KeepAspectRatio);
            const QPointF half{shown.width() / 2, shown.height() / 2};
            // Across, up and down: just inside the cover it is red, just outside there is bare ground.
            for (const QPoint direction : {QPoint{-1, 0}, QPoint{1, 0}, QPoint{0, -1}, QPoint{0, 1}}) {
                const QPointF edge{direction.x() * half.x(), direction.y() * half.y()};
                QCOMPARE(colorAt(picture, square.center() + edge - 3 * direction), QColor{Qt::red});
                const QPointF outside = square.center() + edge + 4 * direction;
                if (square.contains(outside)) {
                    QCOMPARE(colorAt(picture, outside), themeColor(ColorRole::controlBackground));
                }
            }
            const QRect inside = QRectF{square.center() - half, shown}.toRect().adjusted(8, 8, -8, -8);
            QVERIFY(isPlain(picture, inside, Qt::red));
        }
    }

    void aPictureFillsTheSquareAndLeavesAPlaceholderWhenItGoes()
    {
        const QString file = m_screen->addCover(u"a.png"_s, {100, 100}, moment());
        m_screen->open();
        const QRect square = m_screen->squareRect(0);
        const Drawing before = grid();
        // Between the square's ground and its outline.
        QCOMPARE(before.pixmaps().size(), 3);
        for (const DrawnPixmap &part : before.pixmaps()) {
            QCOMPARE(part.place, QRectF{square});
        }
        QCOMPARE(CornerShape{before.pixmaps().at(1).leftHalf()}.differenceFromContinuous(8), QString{});
        const QImage textsBefore = belowSquare(0);
        QVERIFY(QFile::remove(file));
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(countOf(m_screen->picture(), Qt::red), 0);
        QCOMPARE(belowSquare(0), textsBefore);
        const QRectF symbol = grid().symbol(u"photo"_s, 30, QFont::Normal, ColorRole::tertiaryText);
        QVERIFY(!symbol.isNull());
        const QPointF away = symbol.center() - QRectF{square}.center();
        QVERIFY(std::abs(away.x()) <= 0.5 && std::abs(away.y()) <= 0.5);
        const QColor ground = themeColor(ColorRole::controlBackground);
        QVERIFY(isPlain(m_screen->picture(), {square.left() + 10, square.top() + 10, square.width() - 20, 40},
                        ground));
    }

    void theModelLeavesTheTimeInSightAndNothingInItsPlace()
    {
        m_screen->addRow(u"p"_s, {}, moment(2025), {});
        m_screen->addRow(u"p"_s, {}, moment(2024), u"doubao-seedream-4-0-250828-"_s.repeated(9));
        m_screen->open();
        const QImage without = belowSquare(0);
        const QImage with = belowSquare(1);
        const int timeWidth = 60;
        const QRect right{without.width() - timeWidth, 0, timeWidth, without.height()};
        QCOMPARE(with.copy(right), without.copy(right));
        // Below the one line of prompt.
        const int footerTop = 6 + QFontMetrics{systemFont(12)}.height() + 2;
        const QRect left{0, footerTop, 80, without.height() - footerTop};
        QVERIFY(isPlain(without, left));
        QVERIFY(!isPlain(with, left));
    }

    void modelAndTimeHaveDigitsOfOneHeight()
    {
        m_screen->addRow(u"p\np"_s, {},
                         static_cast<double>(QDateTime{{2025, 8, 8}, {8, 8, 8}}.toSecsSinceEpoch()),
                         u"a-8888"_s);
        m_screen->open();
        const int lineHeight = QFontMetrics{systemFont(10)}.height();
        const QImage below = belowSquare(0);
        const QImage footer = below.copy(0, below.height() - lineHeight, below.width(), lineHeight);
        const auto rowsOfInk = [](const QImage &part) {
            return runs(part.height(), [&](int y) {
                return countIf(part, [](const QColor &pixel) { return pixel.alpha() > 20; },
                               {0, y, part.width(), 1}) > 0;
            });
        };
        const int half = footer.width() / 2;
        const QList<QPoint> modelRows = rowsOfInk(footer.copy(0, 0, half, lineHeight));
        QVERIFY(!modelRows.isEmpty());
        QCOMPARE(rowsOfInk(footer.copy(half, 0, half, lineHeight)), modelRows);
    }

private:
    QWidget *piece(const QString &name) { return accessible::find(&m_screen->window, name); }
    Drawing grid() { return Drawing{m_screen->grid()->viewport()}; }

    /// The part of the tile below its square.
    QImage belowSquare(int position)
    {
        const QRect tile = m_screen->tileRect(position);
        return m_screen->picture().copy(tile.adjusted(0, tile.width(), 0, 0));
    }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryMeasuresTest, runScreenTest)
#include "HistoryMeasuresTest.moc"
