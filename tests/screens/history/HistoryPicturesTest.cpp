#include "support/HistoryScreen.h"
#include "support/PaintWatcher.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QFile>
#include <QLayout>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace quilmora::test::screenCapture;

namespace {

/// Notes the tiles in the order in which they are drawn anew by themselves, which is that of their filling.
class FilledTiles final
{
public:
    explicit FilledTiles(HistoryScreen &screen)
        : m_watcher{[&screen, this](const QWidget &widget, const QRegion &area) {
              const QModelIndex index = screen.grid()->indexAt(area.boundingRect().center());
              if (&widget == screen.grid()->viewport() && index.isValid() &&
                  screen.tileRect(index.row()) == area.boundingRect()) {
                  positions.append(index.row());
              }
          }}
    {
    }

    QList<int> positions;

private:
    const PaintWatcher m_watcher;
};

} // namespace

/// How the pictures of the tiles come, follow their files, and stay for the next visit.
class HistoryPicturesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

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
        // The old picture is gone at once, the new one comes as soon as it is read.
        QVERIFY(!isClose(m_screen->middleColor(0), Qt::red));
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

    /// Run at other resolutions as well, whole or not.
    void picturesAreDrawnAtTheScreensResolution()
    {
        // Lines one pixel wide: they survive only if no pixel of the screen is skipped or smeared.
        m_screen->addCovers(1);
        m_screen->open();
        const double ratio = m_screen->grid()->devicePixelRatioF();
        QCOMPARE(ratio, qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s).toDouble());
        const int side = qRound(m_screen->tileRect(0).width() * ratio);
        QImage lines{{side, side}, QImage::Format_RGB32};
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                lines.setPixel(x, y, x % 2 == 0 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
            }
        }
        samplePictures::write(m_screen->coverFile(u"0.png"_s), samplePictures::png(lines));
        QVERIFY(m_screen->waitUntilFilled());
        const QImage picture = m_screen->picture();
        const QRect tile = m_screen->tileRect(0);
        const int left = qRound(tile.left() * ratio);
        const int y = qRound((tile.top() + tile.width() / 2.0) * ratio);
        for (int x = 20; x < side - 20; ++x) {
            const int expected = x % 2 == 0 ? 0 : 255;
            QCOMPARE(qRed(picture.pixel(left + x, y)), expected);
        }
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
        m_screen->scrollTo(m_screen->tileRect(20).top());
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

    void onlyPicturesInSightAreRead()
    {
        // At the end, and past others before any of them could be read.
        for (const QList<int> &places : {QList<int>{100'000}, QList<int>{2000, 4000}}) {
            cleanup();
            init();
            m_screen->addCovers(100);
            m_screen->open({1000, 700});
            FilledTiles filled{*m_screen};
            for (const int place : places) {
                m_screen->scrollTo(place);
                m_screen->grid()->viewport()->repaint();
            }
            const int first = m_screen->grid()->indexAt({100, 10}).row();
            QVERIFY(first > 0);
            QVERIFY(m_screen->waitUntilFilled());
            QVERIFY(!filled.positions.isEmpty());
            QVERIFY(*std::min_element(filled.positions.cbegin(), filled.positions.cend()) >= first);
        }
    }

    void theNextVisitShowsAllPicturesAtOnceAndReadsNothing()
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
        FilledTiles filled{*m_screen};
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(filled.positions, QList<int>{});
    }

    void theTilesStayInSightWhenTheWindowGrows()
    {
        m_screen->addCovers(400);
        m_screen->open({1000, 700});
        m_screen->scrollTo(m_screen->tileRect(200).top());
        QCOMPARE(m_screen->grid()->indexAt({100, 5}).row(), 200);
        m_screen->window.resize(1600, 1000);
        QTRY_COMPARE(m_screen->grid()->width(), 1600);
        QCOMPARE(m_screen->grid()->indexAt({100, 20}).row(), 200);
    }

    void otherEventsHaveTheirTurnWhileAPictureIsRead()
    {
        m_screen->addCover(u"a.png"_s, {3000, 2000}, 1000, Qt::red);
        m_screen->buildAndShow();
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
        m_screen->buildAndShow();
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
        m_screen->buildAndShow();
        // Without a drawing of the whole, which would show what is there.
        QTRY_VERIFY(m_screen->grid()->isFilled());
        const QImage window = m_screen->window.grab().toImage();
        const QPoint grid = m_screen->grid()->viewport()->mapTo(&m_screen->window, QPoint{});
        for (const int position : {0, 1}) {
            QVERIFY(isClose(colorAt(window, grid + m_screen->squareRect(position).center()), Qt::red));
        }
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

QUILMORA_TEST(HistoryPicturesTest, runScreenTest)
#include "HistoryPicturesTest.moc"
