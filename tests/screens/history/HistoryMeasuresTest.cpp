#include "screens/history/TileFrame.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/HistoryScreen.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QDateTime>
#include <QFontMetrics>
#include <QLabel>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

double fifthOfMarch()
{
    return static_cast<double>(QDateTime{{2025, 3, 5}, {9, 7, 3}}.toSecsSinceEpoch());
}

} // namespace

/// The numbers of the history screen, read from what is drawn.
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
        const QImage picture = screenCapture::capture(&m_screen->window, 2);
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
        m_screen->addRow(u"<b>一行</b>"_s, {}, fifthOfMarch(), u"模型"_s);
        m_screen->addRow(u"甲\n乙\n丙"_s, {}, fifthOfMarch() - 60, u"型号"_s);
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
            m_screen->addRow(prompts.at(position), {}, fifthOfMarch() - 60.0 * static_cast<double>(position));
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
        m_screen->addRow(u"提示词"_s, {}, fifthOfMarch());
        m_screen->open();
        const QRect square = m_screen->squareRect(0);
        QCOMPARE(CornerShape(m_screen->grid()->viewport(), square).differenceFromContinuous(8), QString{});
        constexpr int ratio = 8;
        const QImage picture = screenCapture::capture(m_screen->grid()->viewport(), ratio);
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

    void halfOfTheOutlineLiesBesideTheGround_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("beside");
        QTest::addColumn<int>("width");
        QTest::newRow("one pixel a point, which cannot be halved") << 1.0 << 1 << 1;
        QTest::newRow("two") << 2.0 << 1 << 2;
        QTest::newRow("four") << 4.0 << 2 << 4;
    }

    void halfOfTheOutlineLiesBesideTheGround()
    {
        QFETCH(const double, ratio);
        QFETCH(const int, beside);
        QFETCH(const int, width);
        TileFrame frame{8};
        frame.prepare({100, 100}, 1, ratio);
        const QImage background = frame.background().toImage();
        const QImage outline = frame.outline().toImage();
        const int middle = background.height() / 2;
        for (int x = 0; x < 2 * width + 2; ++x) {
            QCOMPARE(background.pixelColor(x, middle).alpha(), x < beside ? 0 : 255);
            QCOMPARE(outline.pixelColor(x, middle).alpha(), x < width ? 51 : 0);
        }
    }

    void tilePicture()
    {
        m_screen->addCover(u"a.png"_s, {400, 400}, fifthOfMarch());
        m_screen->open();
        const QRect square = m_screen->squareRect(0);
        const Drawing drawn = grid();
        // Between the square's ground and its outline.
        QCOMPARE(drawn.pixmaps().size(), 3);
        for (const auto &part : drawn.pixmaps()) {
            QCOMPARE(part.place, QRectF{square});
        }
        QCOMPARE(CornerShape{drawn.pixmaps().at(1).leftHalf()}.differenceFromContinuous(8), QString{});
    }

    void tilePlaceholder()
    {
        m_screen->addRow(u"提示词"_s, u"~/missing.png"_s, fifthOfMarch());
        m_screen->open();
        const QRectF symbol =
            grid().symbol(u"photo"_s, 30, QFont::Normal, themeColor(ColorRole::tertiaryText));
        QVERIFY(!symbol.isNull());
        const QPointF away = symbol.center() - QRectF{m_screen->squareRect(0)}.center();
        QVERIFY(std::abs(away.x()) <= 0.5 && std::abs(away.y()) <= 0.5);
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

private:
    QWidget *piece(const QString &name) { return accessible::find(&m_screen->window, name); }
    Drawing grid() { return Drawing{m_screen->grid()->viewport()}; }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryMeasuresTest, runScreenTest)
#include "HistoryMeasuresTest.moc"
