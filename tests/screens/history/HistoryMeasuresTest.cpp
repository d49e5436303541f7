#include "HistoryScreen.h"
#include "screens/common/Fonts.h"
#include "screens/common/Theme.h"
#include "screens/history/TileFrame.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"

#include <QDateTime>
#include <QFontMetrics>
#include <QLabel>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The numbers of the history screen, read from what is drawn.
class HistoryMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void header();
    void refreshButton();
    void gridPlaces();
    void tileTexts();
    void tilePlaces();
    void rowsAreAsHighAsTheirHighestTile();
    void tileSquare();
    void halfOfTheOutlineLiesBesideTheGround_data();
    void halfOfTheOutlineLiesBesideTheGround();
    void tilePicture();
    void tilePlaceholder();
    void emptyView();

private:
    QWidget *piece(const QString &name) { return accessible::find(&screen->window, name); }
    Drawing grid() { return Drawing{screen->grid()->viewport()}; }
    QRect squareOf(int position)
    {
        const QRect tile = screen->tileRect(position);
        return {tile.topLeft(), QSize{tile.width(), tile.width()}};
    }

    std::unique_ptr<HistoryScreen> screen;
};

namespace
{

double fifthOfMarch()
{
    return static_cast<double>(QDateTime{{2025, 3, 5}, {9, 7, 3}}.toSecsSinceEpoch());
}

} // namespace

void HistoryMeasuresTest::header()
{
    screen->addCovers(1);
    screen->open();
    QCOMPARE(Drawing{screen->view.get()}.lookOf(u"已生成列表"_s),
             Drawing::look(22, QFont::Bold, themeColor(ColorRole::primaryText)));
    const QRect title = placement::inWindow(accessible::find<QLabel>(&screen->window, u"已生成列表"_s));
    const QRect refresh = placement::inWindow(piece(u"刷新"_s));
    const QRect ground{0, 0, screen->window.width(), placement::inWindow(screen->grid()).top()};
    QCOMPARE(placement::padding(ground, title | refresh), u"32, 24, 32, 16"_s);
    QVERIFY(std::abs(title.center().y() - refresh.center().y()) <= 1);

    // What is seen of the texts lies on one line, too.
    const QImage picture = screenCapture::capture(&screen->window, 2);
    const auto middleOfInk = [&](const QRect &place) {
        int first = picture.height();
        int last = 0;
        for (int y = place.top() * 2; y < (place.bottom() + 1) * 2; ++y) {
            for (int x = place.left() * 2; x < (place.right() + 1) * 2; ++x) {
                if (qGray(picture.pixel(x, y)) < 100 && qAlpha(picture.pixel(x, y)) > 150) {
                    first = std::min(first, y);
                    last = y;
                }
            }
        }
        return (first + last + 1) / 4.0;
    };
    const QRect refreshText = refresh.adjusted(10 + 17 + 4, 2, -10, -2);
    QVERIFY2(std::abs(middleOfInk(title) - middleOfInk(refreshText)) <= 0.5,
             qPrintable(u"%1, %2"_s.arg(middleOfInk(title)).arg(middleOfInk(refreshText))));
}

void HistoryMeasuresTest::refreshButton()
{
    screen->open();
    QWidget *button = piece(u"刷新"_s);
    const Drawing drawn{button};
    const QColor primary = themeColor(ColorRole::primaryText);
    QCOMPARE(drawn.lookOf(u"刷新"_s), Drawing::look(13, QFont::Normal, primary));
    const QRectF symbol = drawn.symbol(u"arrow.clockwise"_s, 13, QFont::Normal, primary);
    QVERIFY(!symbol.isNull());
    QCOMPARE(qRound(drawn.placeOf(u"刷新"_s).left() - symbol.right()), 4);
}

void HistoryMeasuresTest::gridPlaces()
{
    screen->addCovers(6);
    screen->open();
    const QRect first = screen->tileRect(0);
    QCOMPARE(first.topLeft(), QPoint(32, 0));
    QCOMPARE(screen->tileRect(1).left() - first.right() - 1, 16);
    QCOMPARE(screen->tileRect(4).left(), 32);
    QCOMPARE(screen->tileRect(4).top() - first.bottom() - 1, 16);
    QCOMPARE(screen->window.width() - screen->tileRect(3).right() - 1, 32);
    // Each square is as wide as a quarter of what three gaps leave.
    QCOMPARE(first.width(), (1000 - 2 * 32 - 3 * 16) / 4);
}

void HistoryMeasuresTest::tileTexts()
{
    screen->addRow(u"提示词"_s, {}, fifthOfMarch(), u"模型"_s);
    screen->open();
    const Drawing drawn = grid();
    const QColor tertiary = themeColor(ColorRole::tertiaryText);
    QCOMPARE(drawn.lookOf(u"提示词"_s),
             Drawing::look(12, QFont::Normal, themeColor(ColorRole::secondaryText)));
    QCOMPARE(drawn.lookOf(u"模型"_s), Drawing::look(10, QFont::Normal, tertiary));
    QCOMPARE(drawn.lookOf(u"03-05 09:07"_s), Drawing::look(10, QFont::Normal, tertiary));
}

void HistoryMeasuresTest::tilePlaces()
{
    screen->addRow(u"一行"_s, {}, fifthOfMarch(), u"模型"_s);
    screen->addRow(u"甲\n乙\n丙"_s, {}, fifthOfMarch() - 60, u"型号"_s);
    screen->open();
    const Drawing drawn = grid();
    const QRect square = squareOf(0);
    const QRectF prompt = drawn.placeOf(u"一行"_s);
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

void HistoryMeasuresTest::rowsAreAsHighAsTheirHighestTile()
{
    const QString twoLines = u"甲\n乙"_s;
    const QString long200 = u"长"_s.repeated(200);
    const QStringList prompts{u"一"_s,  u"一"_s, u"一"_s, u"一"_s, u"二"_s,
                              twoLines, u"二"_s, u"二"_s, long200, u"三"_s};
    for (qsizetype position = 0; position < prompts.size(); ++position) {
        screen->addRow(prompts.at(position), {}, fifthOfMarch() - 60.0 * static_cast<double>(position));
    }
    screen->open();
    const int line = QFontMetrics{systemFont(12)}.height();
    const auto gapBelowRow = [this](int position) {
        return screen->tileRect(position + 4).top() - screen->tileRect(position).bottom() - 1;
    };
    QCOMPARE(gapBelowRow(0), 16);
    QCOMPARE(gapBelowRow(4), 16 + line);
    QCOMPARE(gapBelowRow(5), 16);
    QCOMPARE(screen->tileRect(8).height(), screen->tileRect(5).height());
    QCOMPARE(screen->tileRect(9).height(), screen->tileRect(0).height());
    // The tile ends with its footer.
    const QRect tile = screen->tileRect(0);
    QVERIFY(std::abs(grid().placeOf(u"模型"_s).bottom() - (tile.bottom() + 1)) <= 1);
}

void HistoryMeasuresTest::tileSquare()
{
    screen->addRow(u"提示词"_s, {}, fifthOfMarch());
    screen->open();
    const QRect square = squareOf(0);
    QCOMPARE(CornerShape(screen->grid()->viewport(), square).differenceFromContinuous(8), QString{});
    constexpr int ratio = 8;
    const QImage picture = screenCapture::capture(screen->grid()->viewport(), ratio);
    const int y = square.center().y() * ratio;
    const int left = square.left() * ratio;
    // Grey at 20 %, one wide.
    const QColor line = picture.pixelColor(left, y);
    QVERIFY2(screenCapture::isClose(line, themeColor(ColorRole::tileBorder)),
             qPrintable(screenCapture::text(line)));
    int width = 0;
    while (picture.pixelColor(left + width, y) == line) {
        ++width;
    }
    QCOMPARE(width, ratio);
    QCOMPARE(picture.pixelColor(left + 3 * ratio, y), QColor{Qt::white});
    QCOMPARE(picture.pixelColor(left - 1, y).alpha(), 0);
}

void HistoryMeasuresTest::halfOfTheOutlineLiesBesideTheGround_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("beside");
    QTest::addColumn<int>("width");
    QTest::newRow("one pixel a point, which cannot be halved") << 1.0 << 1 << 1;
    QTest::newRow("two") << 2.0 << 1 << 2;
    QTest::newRow("four") << 4.0 << 2 << 4;
}

void HistoryMeasuresTest::halfOfTheOutlineLiesBesideTheGround()
{
    QFETCH(const double, ratio);
    QFETCH(const int, beside);
    QFETCH(const int, width);
    TileFrame frame{8};
    frame.prepare({100, 100}, 1, ratio);
    const QImage ground = frame.ground().toImage();
    const QImage outline = frame.outline().toImage();
    const int middle = ground.height() / 2;
    for (int x = 0; x < 2 * width + 2; ++x) {
        QCOMPARE(ground.pixelColor(x, middle).alpha(), x < beside ? 0 : 255);
        QCOMPARE(outline.pixelColor(x, middle).alpha(), x < width ? 51 : 0);
    }
}

void HistoryMeasuresTest::tilePicture()
{
    screen->addCover(u"a.png"_s, {400, 400}, fifthOfMarch());
    screen->open();
    const QRect square = squareOf(0);
    const Drawing drawn = grid();
    // Between the square's ground and its outline.
    QCOMPARE(drawn.pixmaps().size(), 3);
    for (const auto &part : drawn.pixmaps()) {
        QCOMPARE(part.place, QRectF{square});
    }
    const QImage cover = drawn.pixmaps().at(1).pixmap.toImage();
    const CornerShape corner{cover.copy(0, 0, cover.width() / 2, cover.height())};
    QCOMPARE(corner.differenceFromContinuous(8), QString{});
}

void HistoryMeasuresTest::tilePlaceholder()
{
    screen->addRow(u"提示词"_s, u"~/missing.png"_s, fifthOfMarch());
    screen->open();
    const QRectF symbol = grid().symbol(u"photo"_s, 30, QFont::Normal, themeColor(ColorRole::tertiaryText));
    QVERIFY(!symbol.isNull());
    const QPointF away = symbol.center() - QRectF{squareOf(0)}.center();
    QVERIFY(std::abs(away.x()) <= 0.5 && std::abs(away.y()) <= 0.5);
}

void HistoryMeasuresTest::emptyView()
{
    screen->open();
    const QColor tertiary = themeColor(ColorRole::tertiaryText);
    QWidget *title = piece(u"暂无生成记录"_s);
    QWidget *hint = piece(u"前往「生成封面」开始创作吧"_s);
    QWidget *body = title->parentWidget();
    const Drawing drawn{body};
    QCOMPARE(drawn.lookOf(u"暂无生成记录"_s),
             Drawing::look(16, QFont::Medium, themeColor(ColorRole::secondaryText)));
    QCOMPARE(drawn.lookOf(u"前往「生成封面」开始创作吧"_s), Drawing::look(13, QFont::Normal, tertiary));
    const QRectF symbol = drawn.symbol(u"photo.stack"_s, 50, QFont::Normal, tertiary);
    QVERIFY(!symbol.isNull());
    QCOMPARE(qRound(title->y() - symbol.bottom()), 12);
    QCOMPARE(placement::gapBelow(title, hint), 12);
    for (const QRectF &item : {symbol, QRectF{title->geometry()}, QRectF{hint->geometry()}}) {
        QVERIFY(placement::centredAcross(item, body->rect()));
    }
    QVERIFY(std::abs(symbol.top() - (body->height() - hint->geometry().bottom() - 1)) <= 1);
    QCOMPARE(body->geometry().bottom(), screen->view->rect().bottom());
}

int main(int argc, char **argv)
{
    return runScreenTest<HistoryMeasuresTest>(argc, argv);
}
#include "HistoryMeasuresTest.moc"
