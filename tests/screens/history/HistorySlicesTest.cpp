#include "HistoryScreen.h"
#include "support/ScreenCapture.h"

#include <QFile>
#include <QLayout>
#include <QScrollBar>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

namespace
{

constexpr QSize large{3000, 2000};

} // namespace

/// How pictures come while other things happen, and what the next visit finds of them.
class HistorySlicesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void otherEventsHaveTheirTurnWhileAPictureIsRead();
    void aPictureScrolledOutOfSightIsNotReadToItsEnd();
    void onePictureOfTwoTilesShowsInBoth();
    void theNextVisitShowsAllPicturesAtOnce();
    void theNextVisitSeesWhatChanged();

private:
    /// Leaves the screen and comes back, up to its first drawing.
    void visitAgain();
    QColor middleOf(int position);
    QString stored(const QString &name) const { return u"~/Pictures/Quilmora/coverimg/"_s + name; }

    std::unique_ptr<HistoryScreen> screen;
};

void HistorySlicesTest::visitAgain()
{
    screen->view.reset();
    screen->build();
    QVERIFY(QTest::qWaitFor([this] { return screen->grid() != nullptr; }));
    screen->window.layout()->activate();
}

QColor HistorySlicesTest::middleOf(int position)
{
    const QRect tile = screen->tileRect(position);
    return colorAt(screen->picture(), QPoint{tile.center().x(), tile.top() + tile.width() / 2});
}

void HistorySlicesTest::otherEventsHaveTheirTurnWhileAPictureIsRead()
{
    screen->addCover(u"a.png"_s, large, 1000, Qt::red);
    screen->build();
    showWindow(screen->window, {1000, 700});
    int turns = 0;
    QTimer others;
    connect(&others, &QTimer::timeout, this, [&] { turns += screen->grid()->isFilled() ? 0 : 1; });
    others.start(0);
    QVERIFY(screen->waitUntilFilled());
    QVERIFY2(turns > 4, qPrintable(QString::number(turns)));
    QVERIFY(isClose(middleOf(0), Qt::red));
}

void HistorySlicesTest::aPictureScrolledOutOfSightIsNotReadToItsEnd()
{
    screen->addCovers(100);
    for (int number = 0; number < 12; ++number) {
        screen->writeCover(u"%1.png"_s.arg(number), {1200, 900}, Qt::blue);
    }
    screen->build();
    showWindow(screen->window, {1000, 700});
    QScrollBar *bar = screen->grid()->verticalScrollBar();
    bar->setValue(bar->maximum());
    QVERIFY(screen->waitUntilFilled());
    const ThumbnailCache::Square square{screen->tileRect(0).width(), 8, screen->grid()->devicePixelRatioF()};
    for (int number = 4; number < 12; ++number) {
        QCOMPARE(screen->thumbnails.find(stored(u"%1.png"_s.arg(number)), square).state,
                 ThumbnailCache::State::unknown);
    }
    bar->setValue(0);
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(isClose(middleOf(5), Qt::blue));
}

void HistorySlicesTest::onePictureOfTwoTilesShowsInBoth()
{
    screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
    screen->addRow(u"p"_s, stored(u"a.png"_s), 999);
    screen->build();
    showWindow(screen->window, {1000, 700});
    // Without a drawing of the whole, which would show what is there.
    QTRY_VERIFY(screen->grid()->isFilled());
    const QImage window = screen->window.grab().toImage();
    const QPoint grid = screen->grid()->viewport()->mapTo(&screen->window, QPoint{});
    for (const int position : {0, 1}) {
        const QRect tile = screen->tileRect(position);
        const QPoint middle = grid + QPoint{tile.center().x(), tile.top() + tile.width() / 2};
        QVERIFY(isClose(colorAt(window, middle), Qt::red));
    }
}

void HistorySlicesTest::theNextVisitShowsAllPicturesAtOnce()
{
    screen->addCovers(8);
    screen->open();
    const qsizetype bytes = screen->thumbnails.bytes();
    QVERIFY(bytes > 0);
    visitAgain();
    for (int position = 0; position < 8; ++position) {
        QVERIFY(isClose(middleOf(position), Qt::red));
    }
    QCOMPARE(screen->thumbnails.bytes(), bytes);
}

void HistorySlicesTest::theNextVisitSeesWhatChanged()
{
    screen->addCovers(3);
    screen->addRow(u"p"_s, stored(u"late.png"_s), 1e9);
    screen->open();
    screen->writeCover(u"0.png"_s, {90, 160}, Qt::blue);
    QVERIFY(QFile::remove(screen->coverFile(u"1.png"_s)));
    screen->writeCover(u"late.png"_s, {160, 90}, Qt::green);
    visitAgain();
    QVERIFY(!isClose(middleOf(0), Qt::red));
    QVERIFY(!isClose(middleOf(1), Qt::red));
    QVERIFY(isClose(middleOf(2), Qt::red));
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(isClose(middleOf(0), Qt::blue));
    QVERIFY(!isClose(middleOf(1), Qt::red));
    QVERIFY(isClose(middleOf(3), Qt::green));
}

int main(int argc, char **argv)
{
    return runScreenTest<HistorySlicesTest>(argc, argv);
}
#include "HistorySlicesTest.moc"
