#include "screens/history/HistoryThumbnail.h"

#include "support/HistoryScreen.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

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
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void theTimeIsMonthDayAndClockWithoutAYear()
    {
        const auto seconds = [](int year, int minute) {
            return static_cast<double>(QDateTime{{year, 3, 5}, {9, minute, 59}}.toSecsSinceEpoch());
        };
        m_screen->addRow(u"p"_s, {}, seconds(2025, 7), {});
        m_screen->addRow(u"p"_s, {}, seconds(2024, 7), {});
        m_screen->addRow(u"p"_s, {}, seconds(2023, 8), {});
        m_screen->open();
        QCOMPARE(m_screen->tile(0)->text(QAccessible::Description), u"03-05 09:07"_s);
        // What is drawn depends on the minute, not on the year.
        QCOMPARE(texts(1), texts(0));
        QVERIFY(texts(2) != texts(0));
    }

    void aCoverIsShownWholeBetweenBands_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("landscape") << QSize{1600, 900};
        QTest::newRow("portrait") << QSize{900, 1600};
        QTest::newRow("small and square") << QSize{8, 8};
    }

    void aCoverIsShownWholeBetweenBands()
    {
        QFETCH(const QSize, size);
        m_screen->addCover(u"a.png"_s, size, 1000, Qt::red);
        m_screen->open();
        const QImage picture = m_screen->picture();
        const QRectF square = m_screen->squareRect(0);
        const QSizeF shown = QSizeF{size}.scaled(square.size(), Qt::KeepAspectRatio);
        const QPointF half{shown.width() / 2, shown.height() / 2};
        for (const double side : {-1.0, 1.0}) {
            // Across and up or down: just inside the cover it is red, just outside there is bare ground.
            for (const QPointF direction : {QPointF{side, 0}, QPointF{0, side}}) {
                const QPointF edge{direction.x() * half.x(), direction.y() * half.y()};
                QVERIFY(isClose(colorAt(picture, square.center() + edge - 3 * direction), Qt::red));
                const QPointF outside = square.center() + edge + 4 * direction;
                if (square.contains(outside)) {
                    QCOMPARE(colorAt(picture, outside), themeColor(ColorRole::controlBackground));
                }
            }
        }
        const QRect inside = QRectF{square.center() - half, shown}.toRect().adjusted(8, 8, -8, -8);
        QVERIFY(isPlain(picture, inside, Qt::red));
    }

    void aMissingPictureShowsTheFaintPlaceholderAndTheRestStays()
    {
        const QString file = m_screen->addCover(u"a.png"_s, {100, 100}, 1000, Qt::red);
        m_screen->open();
        const QImage textsBefore = texts(0);
        QVERIFY(QFile::remove(file));
        QVERIFY(m_screen->waitUntilFilled());
        const QImage picture = m_screen->picture();
        QCOMPARE(countOf(picture, Qt::red), 0);
        const QRect square = m_screen->squareRect(0);
        const QRect middle{square.center() - QPoint{22, 22}, QSize{44, 44}};
        const QColor ground = themeColor(ColorRole::controlBackground);
        const int drawn = middle.width() * middle.height() - countOf(picture, ground, middle);
        QVERIFY2(drawn > 50, qPrintable(QString::number(drawn)));
        QVERIFY(isPlain(picture, {square.left() + 10, square.top() + 10, square.width() - 20, 40}, ground));
        QCOMPARE(texts(0), textsBefore);
    }

    void anEmptyModelLeavesTheLeftSideBlank()
    {
        m_screen->addRow(u"p"_s, {}, 1000, {});
        m_screen->addRow(u"p"_s, {}, 1000 - 60 * 60 * 24 * 365, u"model"_s);
        m_screen->open();
        // Below the one line of prompt.
        const int footerTop = 6 + QFontMetrics{systemFont(12)}.height() + 2;
        const QRect left{0, footerTop, 80, texts(0).height() - footerTop};
        QVERIFY(isPlain(texts(0), left));
        QVERIFY(!isPlain(texts(1), left));
    }

    void aLongModelNameLeavesTheTimeInSight()
    {
        m_screen->addRow(u"p"_s, {}, 1000, {});
        m_screen->addRow(u"p"_s, {}, 1000, u"doubao-seedream-4-0-250828-"_s.repeated(9));
        m_screen->open();
        const int timeWidth = 60;
        const QRect right{texts(0).width() - timeWidth, 0, timeWidth, texts(0).height()};
        QCOMPARE(texts(1).copy(right), texts(0).copy(right));
    }

    void modelAndTimeHaveDigitsOfOneHeight()
    {
        m_screen->addRow(u"p\np"_s, {},
                         static_cast<double>(QDateTime{{2025, 8, 8}, {8, 8, 8}}.toSecsSinceEpoch()),
                         u"a-8888"_s);
        m_screen->open();
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

private:
    /// The part of the tile below its square.
    QImage texts(int position)
    {
        const QRect tile = m_screen->tileRect(position);
        return m_screen->picture().copy(tile.adjusted(0, tile.width(), 0, 0));
    }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryThumbnailTest, runScreenTest)
#include "HistoryThumbnailTest.moc"
