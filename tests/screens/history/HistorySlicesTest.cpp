#include "support/HistoryScreen.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QLayout>
#include <QScrollBar>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

/// How pictures come while other things happen, and what the next visit finds of them.
class HistorySlicesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void otherEventsHaveTheirTurnWhileAPictureIsRead()
    {
        m_screen->addCover(u"a.png"_s, {3000, 2000}, 1000, Qt::red);
        m_screen->build();
        showWindow(m_screen->window, {1000, 700});
        int turns = 0;
        QTimer others;
        connect(&others, &QTimer::timeout, this, [&] { turns += m_screen->grid()->isFilled() ? 0 : 1; });
        others.start(0);
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY2(turns > 4, qPrintable(QString::number(turns)));
        QVERIFY(isClose(m_screen->middleColor(0), Qt::red));
    }

    void aPictureScrolledOutOfSightIsNotReadToItsEnd()
    {
        m_screen->addCovers(100);
        for (int number = 0; number < 12; ++number) {
            m_screen->writeCover(u"%1.png"_s.arg(number), {1200, 900}, Qt::blue);
        }
        m_screen->build();
        showWindow(m_screen->window, {1000, 700});
        QScrollBar *bar = m_screen->grid()->verticalScrollBar();
        bar->setValue(bar->maximum());
        QVERIFY(m_screen->waitUntilFilled());
        const ThumbnailCache::Square square{m_screen->tileRect(0).width(), 8,
                                            m_screen->grid()->devicePixelRatioF()};
        for (int number = 4; number < 12; ++number) {
            QCOMPARE(
                m_screen->thumbnails.find(HistoryScreen::storedPath(u"%1.png"_s.arg(number)), square).state,
                ThumbnailCache::State::unknown);
        }
        bar->setValue(0);
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(isClose(m_screen->middleColor(5), Qt::blue));
    }

    void onePictureOfTwoTilesShowsInBoth()
    {
        m_screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
        m_screen->addRow(u"p"_s, HistoryScreen::storedPath(u"a.png"_s), 999);
        m_screen->build();
        showWindow(m_screen->window, {1000, 700});
        // Without a drawing of the whole, which would show what is there.
        QTRY_VERIFY(m_screen->grid()->isFilled());
        const QImage window = m_screen->window.grab().toImage();
        const QPoint grid = m_screen->grid()->viewport()->mapTo(&m_screen->window, QPoint{});
        for (const int position : {0, 1}) {
            QVERIFY(isClose(colorAt(window, grid + m_screen->squareRect(position).center()), Qt::red));
        }
    }

    void theNextVisitShowsAllPicturesAtOnce()
    {
        m_screen->addCovers(8);
        m_screen->open();
        const qsizetype bytes = m_screen->thumbnails.bytes();
        QVERIFY(bytes > 0);
        visitAgain();
        for (int position = 0; position < 8; ++position) {
            QVERIFY(isClose(m_screen->middleColor(position), Qt::red));
        }
        QCOMPARE(m_screen->thumbnails.bytes(), bytes);
    }

    void theNextVisitSeesWhatChanged()
    {
        m_screen->addCovers(3);
        m_screen->addRow(u"p"_s, HistoryScreen::storedPath(u"late.png"_s), 1e9);
        m_screen->open();
        m_screen->writeCover(u"0.png"_s, {90, 160}, Qt::blue);
        QVERIFY(QFile::remove(m_screen->coverFile(u"1.png"_s)));
        m_screen->writeCover(u"late.png"_s, {160, 90}, Qt::green);
        visitAgain();
        QVERIFY(!isClose(m_screen->middleColor(0), Qt::red));
        QVERIFY(!isClose(m_screen->middleColor(1), Qt::red));
        QVERIFY(isClose(m_screen->middleColor(2), Qt::red));
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(isClose(m_screen->middleColor(0), Qt::blue));
        QVERIFY(!isClose(m_screen->middleColor(1), Qt::red));
        QVERIFY(isClose(m_screen->middleColor(3), Qt::green));
    }

private:
    /// Leaves the screen and comes back, up to its first drawing.
    void visitAgain()
    {
        m_screen->view.reset();
        m_screen->build();
        QVERIFY(QTest::qWaitFor([this] { return m_screen->grid() != nullptr; }));
        m_screen->window.layout()->activate();
    }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistorySlicesTest, runScreenTest)
#include "HistorySlicesTest.moc"
