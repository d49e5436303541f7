#include "support/HistoryScreen.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"
#include "ui/theme/Theme.h"

#include <QFile>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

namespace {

/// Notes the tiles in the order in which they are drawn anew by themselves, which is that of their filling.
class FilledTiles final : public QObject
{
public:
    explicit FilledTiles(HistoryScreen &historyScreen) : m_screen{historyScreen}
    {
        m_screen.grid()->viewport()->installEventFilter(this);
    }

    QList<int> positions;

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            const QRect area = static_cast<QPaintEvent *>(event)->rect();
            const QModelIndex index = m_screen.grid()->indexAt(area.center());
            if (index.isValid() && m_screen.tileRect(index.row()) == area) {
                positions.append(index.row());
            }
        }
        return false;
    }

private:
    HistoryScreen &m_screen;
};

} // namespace

class HistoryPicturesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void aReplacedPictureShowsAtTheNextDrawing()
    {
        m_screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
        m_screen->open();
        QVERIFY(isClose(m_screen->middleColor(0), Qt::red));
        m_screen->writeCover(u"a.png"_s, {90, 160}, Qt::blue);
        // The old picture is gone at once, the new one comes as soon as it is read.
        QVERIFY(!isClose(m_screen->middleColor(0), Qt::red));
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(isClose(m_screen->middleColor(0), Qt::blue));
    }

    void aPictureOfTheSameSizeAndTimeIsSeenToBeAnother()
    {
        const QString file = m_screen->addCover(u"a.png"_s, {160, 90}, 1000, Qt::red);
        const auto writeBitmap = [&](const QColor &color) {
            return samplePictures::plain({160, 90}, color).save(file, "bmp");
        };
        const QDateTime moment = QDateTime::fromSecsSinceEpoch(1'700'000'000);
        const auto setTime = [&] {
            QFile opened{file};
            return opened.open(QIODevice::ReadWrite) &&
                   opened.setFileTime(moment, QFileDevice::FileModificationTime);
        };
        QVERIFY(writeBitmap(Qt::red) && setTime());
        const qint64 size = QFileInfo{file}.size();
        m_screen->open();
        QVERIFY(isClose(m_screen->middleColor(0), Qt::red));
        QVERIFY(writeBitmap(Qt::blue) && setTime());
        QCOMPARE(QFileInfo{file}.size(), size);
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(isClose(m_screen->middleColor(0), Qt::blue));
    }

    void addedAndRemovedPicturesShowAtTheNextDrawing()
    {
        m_screen->addRow(u"p"_s, HistoryScreen::storedPath(u"late.png"_s), 1000);
        m_screen->open();
        QCOMPARE(countOf(m_screen->picture(), Qt::red), 0);
        m_screen->writeCover(u"late.png"_s, {160, 90}, Qt::red);
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(isClose(m_screen->middleColor(0), Qt::red));
        QVERIFY(QFile::remove(m_screen->coverFile(u"late.png"_s)));
        QCOMPARE(countOf(m_screen->picture(), Qt::red), 0);
    }

    void aPictureStandsUpright()
    {
        // Left half red, right half blue, and a mark that it has to be turned a quarter to the right.
        QImage image = samplePictures::plain({160, 160}, Qt::blue);
        QPainter{&image}.fillRect(0, 0, 80, 160, Qt::red);
        samplePictures::write(m_screen->coverFile(u"side.png"_s), samplePictures::sidewaysJpeg(image));
        m_screen->addRow(u"p"_s, HistoryScreen::storedPath(u"side.png"_s), 1000);
        m_screen->open();
        const QRect tile = m_screen->tileRect(0);
        const QImage picture = m_screen->picture();
        const double x = tile.center().x();
        QVERIFY(isClose(colorAt(picture, {x, tile.top() + tile.width() * 0.25}), Qt::red, 12));
        QVERIFY(isClose(colorAt(picture, {x, tile.top() + tile.width() * 0.75}), Qt::blue, 12));
    }

    void picturesComeOneByOneFromTheMiddleOutwards()
    {
        m_screen->addCovers(40);
        m_screen->open({1000, 1000});
        FilledTiles filled{*m_screen};
        m_screen->grid()->verticalScrollBar()->setValue(m_screen->tileRect(20).top());
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(filled.positions.size() >= 12);
        const QPoint middle = m_screen->grid()->viewport()->rect().center();
        int before = 0;
        for (const int position : std::as_const(filled.positions)) {
            const int distance = (m_screen->tileRect(position).center() - middle).manhattanLength();
            QVERIFY2(distance + 2 >= before, qPrintable(QString::number(position)));
            before = distance;
        }
    }

    void onlyPicturesInSightAreRead_data()
    {
        QTest::addColumn<QList<int>>("places");
        QTest::newRow("at the end") << QList<int>{100'000};
        QTest::newRow("past others, before any of them could be read") << QList<int>{2000, 4000};
    }

    void onlyPicturesInSightAreRead()
    {
        QFETCH(const QList<int>, places);
        m_screen->addCovers(100);
        m_screen->open({1000, 700});
        FilledTiles filled{*m_screen};
        for (const int place : places) {
            m_screen->grid()->verticalScrollBar()->setValue(place);
            m_screen->grid()->viewport()->repaint();
        }
        const int first = m_screen->grid()->indexAt({100, 10}).row();
        QVERIFY(first > 0);
        QVERIFY(m_screen->waitUntilFilled());
        QVERIFY(!filled.positions.isEmpty());
        QVERIFY(*std::min_element(filled.positions.cbegin(), filled.positions.cend()) >= first);
    }

    void anIdleGridReadsNothing()
    {
        m_screen->addCovers(8);
        m_screen->open();
        FilledTiles filled{*m_screen};
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(filled.positions, QList<int>{});
        QVERIFY(m_screen->grid()->isFilled());
    }

    void theTilesStayInSightWhenTheWindowGrows()
    {
        m_screen->addCovers(400);
        m_screen->open({1000, 700});
        m_screen->grid()->verticalScrollBar()->setValue(m_screen->tileRect(200).top());
        QCOMPARE(m_screen->grid()->indexAt({100, 5}).row(), 200);
        m_screen->window.resize(1600, 1000);
        QTRY_COMPARE(m_screen->grid()->width(), 1600);
        QCOMPARE(m_screen->grid()->indexAt({100, 20}).row(), 200);
    }

private:
    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryPicturesTest, runScreenTest)
#include "HistoryPicturesTest.moc"
