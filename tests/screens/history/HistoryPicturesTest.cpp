#include "HistoryScreen.h"
#include "screens/common/Theme.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QFile>
#include <QPaintEvent>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

namespace
{

/// Notes the tiles in the order in which they are drawn anew by themselves, which is that of their filling.
class FilledTiles final : public QObject
{
public:
    explicit FilledTiles(HistoryScreen &historyScreen) : screen{historyScreen}
    {
        screen.grid()->viewport()->installEventFilter(this);
    }

    QList<int> positions;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            const QRect area = static_cast<QPaintEvent *>(event)->rect();
            const QModelIndex index = screen.grid()->indexAt(area.center());
            if (index.isValid() && screen.tileRect(index.row()) == area) {
                positions.append(index.row());
            }
        }
        return false;
    }

private:
    HistoryScreen &screen;
};

} // namespace

class HistoryPicturesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void aReplacedPictureShowsAtTheNextDrawing();
    void aPictureOfTheSameSizeAndTimeIsSeenToBeAnother();
    void aRemovedPictureShowsAtTheNextDrawing();
    void anAddedPictureShowsAtTheNextDrawing();
    void aPictureStandsUpright();
    void onlyPicturesInSightAreRead();
    void picturesComeOneByOneFromTheMiddleOutwards();
    void picturesThatLeftTheSightAreDropped();
    void anIdleGridReadsNothing();
    void theTilesStayInSightWhenTheWindowGrows();

private:
    QColor middleOf(int position)
    {
        const QRect tile = screen->tileRect(position);
        return colorAt(screen->picture(), QPoint{tile.center().x(), tile.top() + tile.width() / 2});
    }

    std::unique_ptr<HistoryScreen> screen;
};

void HistoryPicturesTest::aReplacedPictureShowsAtTheNextDrawing()
{
    screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
    screen->open();
    QVERIFY(isClose(middleOf(0), Qt::red));
    screen->writeCover(u"a.png"_s, {90, 160}, Qt::blue);
    // The old picture is gone at once, the new one comes as soon as it is read.
    QVERIFY(!isClose(middleOf(0), Qt::red));
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(isClose(middleOf(0), Qt::blue));
}

void HistoryPicturesTest::aPictureOfTheSameSizeAndTimeIsSeenToBeAnother()
{
    const QString file = screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
    const auto writeBitmap = [&](const QColor &color) {
        QImage image{{160, 90}, QImage::Format_RGB32};
        image.fill(color);
        return image.save(file, "bmp");
    };
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(1'700'000'000);
    const auto setTime = [&] {
        QFile opened{file};
        return opened.open(QIODevice::ReadWrite) &&
               opened.setFileTime(moment, QFileDevice::FileModificationTime);
    };
    QVERIFY(writeBitmap(Qt::red) && setTime());
    const qint64 size = QFileInfo{file}.size();
    screen->open();
    QVERIFY(isClose(middleOf(0), Qt::red));
    QVERIFY(writeBitmap(Qt::blue) && setTime());
    QCOMPARE(QFileInfo{file}.size(), size);
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(isClose(middleOf(0), Qt::blue));
}

void HistoryPicturesTest::aRemovedPictureShowsAtTheNextDrawing()
{
    const QString file = screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
    screen->open();
    QVERIFY(QFile::remove(file));
    QVERIFY(!isClose(middleOf(0), Qt::red));
    QCOMPARE(countOf(screen->picture(), Qt::red), 0);
}

void HistoryPicturesTest::anAddedPictureShowsAtTheNextDrawing()
{
    screen->addRow(u"p"_s, u"~/Pictures/Quilmora/coverimg/late.png"_s, 1000);
    screen->open();
    QCOMPARE(countOf(screen->picture(), Qt::red), 0);
    screen->writeCover(u"late.png"_s, {160, 90}, Qt::red);
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(isClose(middleOf(0), Qt::red));
}

void HistoryPicturesTest::aPictureStandsUpright()
{
    // Left half red, right half blue, and a mark that it has to be turned a quarter to the right.
    QImage image{{160, 160}, QImage::Format_RGB32};
    image.fill(Qt::blue);
    for (int y = 0; y < 160; ++y) {
        for (int x = 0; x < 80; ++x) {
            image.setPixel(x, y, qRgb(255, 0, 0));
        }
    }
    samplePictures::write(screen->coverFile(u"side.png"_s), samplePictures::sidewaysJpeg(image));
    screen->addRow(u"p"_s, u"~/Pictures/Quilmora/coverimg/side.png"_s, 1000);
    screen->open();
    const QRect tile = screen->tileRect(0);
    const QImage picture = screen->picture();
    const double x = tile.center().x();
    QVERIFY(isClose(colorAt(picture, {x, tile.top() + tile.width() * 0.25}), Qt::red, 12));
    QVERIFY(isClose(colorAt(picture, {x, tile.top() + tile.width() * 0.75}), Qt::blue, 12));
}

void HistoryPicturesTest::onlyPicturesInSightAreRead()
{
    screen->addCovers(40);
    screen->open({1000, 700});
    FilledTiles filled{*screen};
    QScrollBar *bar = screen->grid()->verticalScrollBar();
    bar->setValue(bar->maximum());
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(!filled.positions.isEmpty());
    const int firstInSight = screen->grid()->indexAt({100, 10}).row();
    for (const int position : std::as_const(filled.positions)) {
        QVERIFY2(position >= firstInSight, qPrintable(QString::number(position)));
    }
}

void HistoryPicturesTest::picturesComeOneByOneFromTheMiddleOutwards()
{
    screen->addCovers(40);
    screen->open({1000, 1000});
    FilledTiles filled{*screen};
    screen->grid()->verticalScrollBar()->setValue(screen->tileRect(20).top());
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(filled.positions.size() >= 12);
    const QPoint middle = screen->grid()->viewport()->rect().center();
    int before = 0;
    for (const int position : std::as_const(filled.positions)) {
        const int distance = (screen->tileRect(position).center() - middle).manhattanLength();
        QVERIFY2(distance + 2 >= before, qPrintable(QString::number(position)));
        before = distance;
    }
}

void HistoryPicturesTest::picturesThatLeftTheSightAreDropped()
{
    screen->addCovers(100);
    screen->open({1000, 700});
    FilledTiles filled{*screen};
    QScrollBar *bar = screen->grid()->verticalScrollBar();
    // Past many tiles and on, before any of them could be read.
    for (const int place : {2000, 4000}) {
        bar->setValue(place);
        screen->grid()->viewport()->repaint();
    }
    const int first = screen->grid()->indexAt({100, 10}).row();
    QVERIFY(screen->waitUntilFilled());
    QVERIFY(!filled.positions.isEmpty());
    QVERIFY(*std::min_element(filled.positions.cbegin(), filled.positions.cend()) >= first);
}

void HistoryPicturesTest::anIdleGridReadsNothing()
{
    screen->addCovers(8);
    screen->open();
    FilledTiles filled{*screen};
    QVERIFY(screen->waitUntilFilled());
    QCOMPARE(filled.positions, QList<int>{});
    QVERIFY(screen->grid()->isFilled());
}

void HistoryPicturesTest::theTilesStayInSightWhenTheWindowGrows()
{
    screen->addCovers(400);
    screen->open({1000, 700});
    screen->grid()->verticalScrollBar()->setValue(screen->tileRect(200).top());
    QCOMPARE(screen->grid()->indexAt({100, 5}).row(), 200);
    screen->window.resize(1600, 1000);
    QTRY_COMPARE(screen->grid()->width(), 1600);
    QCOMPARE(screen->grid()->indexAt({100, 20}).row(), 200);
}

int main(int argc, char **argv)
{
    return runScreenTest<HistoryPicturesTest>(argc, argv);
}
#include "HistoryPicturesTest.moc"
