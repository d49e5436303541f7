#include "store/ImageStorageService.h"
#include "support/HistoryScreen.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Notes the sizes in which history grids are drawn.
class DrawnSizes final : public QObject
{
public:
    DrawnSizes() { qApp->installEventFilter(this); }

    QList<QSize> ofGrids;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (const auto *grid = qobject_cast<HistoryGrid *>(watched->parent());
            grid != nullptr && watched == grid->viewport() && event->type() == QEvent::Paint) {
            ofGrids.append(grid->size());
        }
        return false;
    }
};

/// Where pixels are drawn along a row or a column of a picture: for each run its start and its length.
QList<QPoint> drawnRuns(const QImage &picture, int place, Qt::Orientation direction)
{
    QList<QPoint> runs;
    const bool isRow = direction == Qt::Horizontal;
    bool inside = false;
    for (int i = 0; i < (isRow ? picture.width() : picture.height()); ++i) {
        const bool isDrawn = qAlpha(isRow ? picture.pixel(i, place) : picture.pixel(place, i)) > 0;
        if (isDrawn && !inside) {
            runs.append({i, 0});
        }
        if (isDrawn) {
            ++runs.last().ry();
        }
        inside = isDrawn;
    }
    return runs;
}

} // namespace

class HistoryListViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { m_screen.reset(); }

    void tilesAreDrawnInFourColumns_data()
    {
        QTest::addColumn<QSize>("window");
        QTest::newRow("small") << QSize{1000, 1000};
        QTest::newRow("wide: wider tiles, no more columns") << QSize{1600, 1500};
    }

    void tilesAreDrawnInFourColumns()
    {
        QFETCH(const QSize, window);
        m_screen->addCovers(9);
        m_screen->open({1000, 700});
        m_screen->window.resize(window);
        QTRY_COMPARE(m_screen->grid()->width(), window.width());
        QVERIFY(m_screen->waitUntilFilled());
        const QImage picture = m_screen->picture();
        const int side = (window.width() - 2 * 32 - 3 * 16) / 4;
        const int rowHeight = m_screen->tileRect(0).height() + 16;
        for (int position = 0; position < 9; ++position) {
            const QPoint corner{32 + position % 4 * (side + 16), position / 4 * rowHeight};
            const QList<QPoint> across = drawnRuns(picture, corner.y() + side / 2, Qt::Horizontal);
            QCOMPARE(across.size(), position < 8 ? 4 : 1);
            QCOMPARE(across.at(position % 4), QPoint(corner.x(), side));
            QVERIFY(
                drawnRuns(picture, corner.x() + side / 2, Qt::Vertical).contains(QPoint(corner.y(), side)));
            QCOMPARE(m_screen->tileRect(position).topLeft(), corner);
        }
        // Clicks between them hit nothing.
        const QRect tile = m_screen->tileRect(0);
        for (const QPoint place :
             {QPoint{10, 50}, QPoint{tile.right() + 1, 50}, QPoint{tile.right() + 16, 50},
              QPoint{50, tile.bottom() + 1}, QPoint{50, tile.bottom() + 16}}) {
            QVERIFY(screenCapture::isPlain(picture, {place, QSize{1, 1}}));
            QTest::mouseClick(m_screen->grid()->viewport(), Qt::LeftButton, {}, place);
            QVERIFY(HistoryScreen::preview() == nullptr);
        }
        QTest::mouseClick(m_screen->grid()->viewport(), Qt::LeftButton, {}, {50, tile.bottom() + 17});
        QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    }

    void theGridIsInItsPlaceWhenItIsFirstDrawn()
    {
        m_screen->addCovers(5);
        // The screen comes into a window that is there already, as when its tab is selected.
        showWindow(m_screen->window, {1000, 700});
        const DrawnSizes sizes;
        m_screen->build();
        m_screen->view->show();
        // The button of the tab does so, to be seen released.
        m_screen->window.repaint();
        QVERIFY(!sizes.ofGrids.isEmpty());
        QCOMPARE(sizes.ofGrids.constFirst(), m_screen->grid()->size());
        QCOMPARE(m_screen->grid()->geometry().bottom(), m_screen->view->rect().bottom());
    }

    void theListIsReadAnewAtEachShowingAndRefresh()
    {
        m_screen->addRow(u"中"_s, {}, 2000);
        m_screen->addRow(u"旧"_s, {}, 1000.5);
        m_screen->open();
        m_screen->addRow(u"新"_s, {}, 3000);
        QCOMPARE(names(), (QStringList{u"中"_s, u"旧"_s}));
        m_screen->refresh();
        QCOMPARE(names(), (QStringList{u"新"_s, u"中"_s, u"旧"_s}));
        m_screen->view->hide();
        m_screen->addRow(u"最新"_s, {}, 4000);
        m_screen->view->show();
        QCOMPARE(names(), (QStringList{u"最新"_s, u"新"_s, u"中"_s, u"旧"_s}));
    }

    void aCoverMadeElsewhereComesFirstWhenTheTabIsOpened()
    {
        m_screen->addCovers(1);
        ImageStorageService storage{m_screen->home.path(u"Pictures/Quilmora/coverimg"_s)};
        const auto path = storage.saveImage(samplePictures::picture({64, 36}));
        QVERIFY(path);
        m_screen->database.insertHistory(u"刚刚生成"_s, *path, u"模型"_s);
        m_screen->open();
        QCOMPARE(m_screen->tile(0)->text(QAccessible::Name), u"刚刚生成"_s);
        QVERIFY(screenCapture::countOf(m_screen->picture(), Qt::red, m_screen->tileRect(0)) > 0);
    }

    void refreshingAnUnchangedHistoryChangesNothingInSight()
    {
        m_screen->addCovers(30);
        m_screen->open();
        m_screen->grid()->verticalScrollBar()->setValue(333);
        QVERIFY(m_screen->waitUntilFilled());
        const QImage before = m_screen->picture();
        const QPointer<HistoryGrid> grid = m_screen->grid();
        m_screen->refresh();
        QCOMPARE(m_screen->grid(), grid.data());
        QCOMPARE(m_screen->grid()->verticalScrollBar()->value(), 333);
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(m_screen->picture(), before);
    }

    void refreshingKeepsThePlaceAndTheFocusedCover()
    {
        m_screen->addCovers(30);
        m_screen->open();
        m_screen->grid()->setFocus(Qt::TabFocusReason);
        m_screen->grid()->setCurrentIndex(m_screen->grid()->model()->index(6, 0));
        const QString focused = m_screen->tile(6)->text(QAccessible::Name);
        m_screen->addRow(u"新"_s, {}, 2.0e9);
        m_screen->refresh();
        QCOMPARE(m_screen->grid()->currentIndex().row(), 7);
        QCOMPARE(m_screen->tile(7)->text(QAccessible::Name), focused);
    }

    void theGridTakesThePlaceOfTheEmptyViewAndBack()
    {
        m_screen->open();
        QCOMPARE(accessible::names(m_screen->view.get()),
                 (QStringList{texts::history, texts::refresh, texts::noCovers, texts::noCoversHint}));
        QVERIFY(m_screen->view->findChildren<QAbstractScrollArea *>().isEmpty());
        const qint64 id = m_screen->addRow(u"一"_s, {}, 1000);
        m_screen->refresh();
        QVERIFY(!m_screen->shows(texts::noCovers));
        QVERIFY(m_screen->grid() != nullptr && m_screen->grid()->isVisible());
        m_screen->database.deleteHistory(id);
        m_screen->refresh();
        QVERIFY(m_screen->shows(texts::noCovers));
        QVERIFY(m_screen->grid() == nullptr);
    }

    void tenThousandRowsTakePartWithoutBeingDrawn()
    {
        m_screen->writeCover(u"one.png"_s, {16, 9}, Qt::red);
        QStringList values;
        for (int number = 0; number < 10'000; ++number) {
            values += u"('提示 %1', '~/Pictures/Quilmora/coverimg/one.png', %1.0, '')"_s.arg(number);
        }
        SqliteConnection{m_screen->databasePath()}.execute(
            u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES "_s + values.join(u',') +
            u';');
        m_screen->open();
        QCOMPARE(m_screen->tile(0)->text(QAccessible::Name), u"提示 9999"_s);
        QCOMPARE(accessible::interfaceOf(m_screen->grid())->childCount(), 10'000);
        m_screen->grid()->verticalScrollBar()->setValue(m_screen->grid()->verticalScrollBar()->maximum());
        QVERIFY(m_screen->waitUntilFilled());
        const QRect last = m_screen->tileRect(9999);
        QCOMPARE(last.bottom() + 1 + 32, m_screen->grid()->viewport()->height());
        QVERIFY(screenCapture::countOf(m_screen->picture(), Qt::red, last) > 0);
        // A tile is no widget, in sight or not.
        QVERIFY(m_screen->grid()->viewport()->children().isEmpty());
    }

    void theScreenOnlyReads()
    {
        m_screen->addCovers(3);
        const QString databasePath = m_screen->databasePath();
        const auto fileBytes = [](const QString &path) {
            QFile file{path};
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
        };
        const QByteArray before = fileBytes(databasePath);
        m_screen->open();
        QVERIFY(m_screen->opensPreview(1));
        QTest::keyClick(HistoryScreen::preview(), Qt::Key_Escape);
        m_screen->refresh();
        QVERIFY(!before.isEmpty());
        QCOMPARE(fileBytes(databasePath), before);
        QCOMPARE(QDir{m_screen->home.path(u"Pictures/Quilmora/coverimg"_s)}.entryList(QDir::Files).size(), 3);
    }

private:
    /// Of all tiles, as a screen reader hears them.
    QStringList names()
    {
        QStringList names;
        for (int position = 0; position < m_screen->grid()->model()->rowCount(); ++position) {
            names.append(m_screen->tile(position)->text(QAccessible::Name));
        }
        return names;
    }

    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryListViewTest, runScreenTest)
#include "HistoryListViewTest.moc"
