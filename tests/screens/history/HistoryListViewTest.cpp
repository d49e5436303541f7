#include "HistoryScreen.h"
#include "generation/GenerationResult.h"
#include "store/ImageStorageService.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimeZone>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

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

} // namespace

class HistoryListViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<HistoryScreen>(); }
    void cleanup() { screen.reset(); }
    void anEmptyHistoryShowsTwoLinesAndNoGrid();
    void theHeaderHoldsTheTitleAndTheRefreshButton();
    void oneRecordTakesTheFirstOfFourColumns();
    void fiveRecordsFillARowAndStartTheNext();
    void aWiderWindowGivesWiderTilesAndNeverMoreColumns();
    void theGridIsInItsPlaceWhenItIsFirstDrawn();
    void theNewestCoverComesFirst();
    void theListIsReadAnewAtEachShowing();
    void aCoverMadeElsewhereComesFirstWhenTheTabIsOpened();
    void refreshingReadsTheListAnew();
    void refreshingAnUnchangedHistoryChangesNothingInSight();
    void refreshingKeepsThePlaceAndTheFocusedCover();
    void theEmptyViewGivesWayToTheGridAndBack();
    void tenThousandRowsTakePartWithoutBeingDrawn();
    void theScreenOnlyReads();

private:
    std::unique_ptr<HistoryScreen> screen;
};

void HistoryListViewTest::anEmptyHistoryShowsTwoLinesAndNoGrid()
{
    screen->open();
    QCOMPARE(accessible::names(screen->view.get()),
             (QStringList{u"已生成列表"_s, u"刷新"_s, u"暂无生成记录"_s, u"前往「生成封面」开始创作吧"_s}));
    QVERIFY(screen->grid() == nullptr);
    QVERIFY(screen->view->findChildren<QAbstractScrollArea *>().isEmpty());

    // Centred below the header: the symbol of 50 pixels, 12, and the two lines.
    const QWidget *title = accessible::find(&screen->window, u"暂无生成记录"_s);
    const QWidget *hint = accessible::find(&screen->window, u"前往「生成封面」开始创作吧"_s);
    const int centre = screen->view->width() / 2;
    QVERIFY(std::abs(title->geometry().center().x() - centre) <= 1);
    QVERIFY(std::abs(hint->geometry().center().x() - centre) <= 1);
    QCOMPARE(hint->geometry().top() - title->geometry().bottom() - 1, 12);
    QCOMPARE(title->font().pixelSize(), 16);
    QCOMPARE(title->font().weight(), QFont::Medium);
    QCOMPARE(hint->font().pixelSize(), 13);
}

void HistoryListViewTest::theHeaderHoldsTheTitleAndTheRefreshButton()
{
    screen->addCovers(1);
    screen->open();
    const QWidget *title = accessible::find<QLabel>(&screen->window, u"已生成列表"_s);
    const QWidget *refresh = accessible::find(&screen->window, u"刷新"_s);
    const QWidget &view = *screen->view;
    QCOMPARE(title->font().pixelSize(), 22);
    QCOMPARE(title->font().weight(), QFont::Bold);
    QCOMPARE(title->mapTo(&view, QPoint{}).x(), 32);
    QCOMPARE(refresh->mapTo(&view, QPoint{refresh->width(), 0}).x(), view.width() - 32);
    const int headerTop = std::min(title->geometry().top(), refresh->geometry().top());
    const int headerBottom = std::max(title->geometry().bottom(), refresh->geometry().bottom());
    QCOMPARE(headerTop, 24);
    QCOMPARE(screen->grid()->geometry().top(), headerBottom + 1 + 16);
    QVERIFY(std::abs(title->geometry().center().y() - refresh->geometry().center().y()) <= 1);
}

void HistoryListViewTest::oneRecordTakesTheFirstOfFourColumns()
{
    screen->addCovers(1);
    screen->open({1000, 700});
    const QRect tile = screen->tileRect(0);
    QCOMPARE(tile.topLeft(), QPoint(32, 0));
    QCOMPARE(tile.width(), (1000 - 64 - 3 * 16) / 4);
    // The rest of the row is bare.
    const QImage picture = screen->picture();
    const QRect rest{tile.right() + 2, 0, picture.width() - tile.right() - 2, picture.height()};
    QCOMPARE(screenCapture::countOf(picture, QColor{0, 0, 0, 0}, rest), rest.width() * rest.height());
}

void HistoryListViewTest::fiveRecordsFillARowAndStartTheNext()
{
    screen->addCovers(5);
    screen->open();
    for (int position = 1; position < 4; ++position) {
        QCOMPARE(screen->tileRect(position).top(), 0);
        QCOMPARE(screen->tileRect(position).left(), screen->tileRect(position - 1).right() + 1 + 16);
    }
    QCOMPARE(screen->tileRect(4).left(), 32);
    QCOMPARE(screen->tileRect(4).top(), screen->tileRect(0).bottom() + 1 + 16);
}

void HistoryListViewTest::aWiderWindowGivesWiderTilesAndNeverMoreColumns()
{
    screen->addCovers(9);
    screen->open({1000, 700});
    screen->window.resize(1600, 1000);
    QTRY_COMPARE(screen->tileRect(0).width(), (1600 - 64 - 3 * 16) / 4);
    QCOMPARE(screen->tileRect(4).left(), screen->tileRect(0).left());
    QCOMPARE(screen->tileRect(8).left(), screen->tileRect(0).left());
}

void HistoryListViewTest::theGridIsInItsPlaceWhenItIsFirstDrawn()
{
    screen->addCovers(5);
    // The screen comes into a window that is there already, as when its tab is selected.
    showWindow(screen->window, {1000, 700});
    const DrawnSizes sizes;
    screen->build();
    screen->view->show();
    // The button of the tab does so, to be seen released.
    screen->window.repaint();
    QVERIFY(!sizes.ofGrids.isEmpty());
    QCOMPARE(sizes.ofGrids.constFirst(), screen->grid()->size());
    QCOMPARE(screen->grid()->geometry().bottom(), screen->view->rect().bottom());
}

void HistoryListViewTest::theNewestCoverComesFirst()
{
    screen->addRow(u"中"_s, {}, 2000);
    screen->addRow(u"旧"_s, {}, 1000.5);
    screen->addRow(u"新"_s, {}, 3000);
    screen->open();
    QCOMPARE(screen->tile(0)->text(QAccessible::Name), u"新"_s);
    QCOMPARE(screen->tile(1)->text(QAccessible::Name), u"中"_s);
    QCOMPARE(screen->tile(2)->text(QAccessible::Name), u"旧"_s);
}

void HistoryListViewTest::theListIsReadAnewAtEachShowing()
{
    screen->addRow(u"一"_s, {}, 1000);
    screen->open();
    QCOMPARE(screen->grid()->model()->rowCount(), 1);
    screen->view->hide();
    screen->addRow(u"二"_s, {}, 2000);
    screen->view->show();
    QCOMPARE(screen->grid()->model()->rowCount(), 2);
}

void HistoryListViewTest::aCoverMadeElsewhereComesFirstWhenTheTabIsOpened()
{
    screen->addCovers(1);
    ImageStorageService storage{screen->home.path(u"Pictures/Quilmora/coverimg"_s)};
    const auto path = storage.saveImage(samplePictures::picture({64, 36}));
    QVERIFY(path);
    screen->database.insertHistory(u"刚刚生成"_s, *path, u"模型"_s);
    screen->open();
    QCOMPARE(screen->tile(0)->text(QAccessible::Name), u"刚刚生成"_s);
    QVERIFY(screenCapture::countOf(screen->picture(), Qt::red, screen->tileRect(0)) > 0);
}

void HistoryListViewTest::refreshingReadsTheListAnew()
{
    screen->addRow(u"一"_s, {}, 1000);
    screen->open();
    screen->addRow(u"二"_s, {}, 2000);
    QCOMPARE(screen->grid()->model()->rowCount(), 1);
    screen->refresh();
    QCOMPARE(screen->grid()->model()->rowCount(), 2);
    QCOMPARE(screen->tile(0)->text(QAccessible::Name), u"二"_s);
}

void HistoryListViewTest::refreshingAnUnchangedHistoryChangesNothingInSight()
{
    screen->addCovers(30);
    screen->open();
    screen->grid()->verticalScrollBar()->setValue(333);
    QVERIFY(screen->waitUntilFilled());
    const QImage before = screen->picture();
    const QPointer<HistoryGrid> grid = screen->grid();
    screen->refresh();
    QCOMPARE(screen->grid(), grid.data());
    QCOMPARE(screen->grid()->verticalScrollBar()->value(), 333);
    QVERIFY(screen->waitUntilFilled());
    QCOMPARE(screen->picture(), before);
}

void HistoryListViewTest::refreshingKeepsThePlaceAndTheFocusedCover()
{
    screen->addCovers(30);
    screen->open();
    screen->grid()->setFocus(Qt::TabFocusReason);
    screen->grid()->setCurrentIndex(screen->grid()->model()->index(6, 0));
    const QString focused = screen->tile(6)->text(QAccessible::Name);
    screen->addRow(u"新"_s, {}, 2.0e9);
    screen->refresh();
    QCOMPARE(screen->grid()->currentIndex().row(), 7);
    QCOMPARE(screen->tile(7)->text(QAccessible::Name), focused);
}

void HistoryListViewTest::theEmptyViewGivesWayToTheGridAndBack()
{
    screen->open();
    QVERIFY(screen->shows(u"暂无生成记录"_s));
    const qint64 id = screen->addRow(u"一"_s, {}, 1000);
    screen->refresh();
    QVERIFY(!screen->shows(u"暂无生成记录"_s));
    QVERIFY(screen->grid() != nullptr && screen->grid()->isVisible());
    screen->database.deleteHistory(id);
    screen->refresh();
    QVERIFY(screen->shows(u"暂无生成记录"_s));
    QVERIFY(screen->grid() == nullptr);
}

void HistoryListViewTest::tenThousandRowsTakePartWithoutBeingDrawn()
{
    screen->writeCover(u"one.png"_s, {16, 9}, Qt::red);
    QStringList values;
    for (int number = 0; number < 10'000; ++number) {
        values += u"('提示 %1', '~/Pictures/Quilmora/coverimg/one.png', %1.0, '')"_s.arg(number);
    }
    SqliteConnection{screen->databasePath()}.execute(
        u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES "_s + values.join(u',') +
        u';');
    screen->open();
    QCOMPARE(screen->tile(0)->text(QAccessible::Name), u"提示 9999"_s);
    QCOMPARE(accessible::interfaceOf(screen->grid())->childCount(), 10'000);
    screen->grid()->verticalScrollBar()->setValue(screen->grid()->verticalScrollBar()->maximum());
    QVERIFY(screen->waitUntilFilled());
    const QRect last = screen->tileRect(9999);
    QCOMPARE(last.bottom() + 1 + 32, screen->grid()->viewport()->height());
    QVERIFY(screenCapture::countOf(screen->picture(), Qt::red, last) > 0);
    // A tile is no widget, in sight or not.
    QVERIFY(screen->grid()->viewport()->children().isEmpty());
}

void HistoryListViewTest::theScreenOnlyReads()
{
    screen->addCovers(3);
    const QString databasePath = screen->databasePath();
    const auto fileBytes = [](const QString &path) {
        QFile file{path};
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
    };
    const QByteArray before = fileBytes(databasePath);
    screen->open();
    screen->clickTile(1);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    QTest::keyClick(HistoryScreen::preview(), Qt::Key_Escape);
    screen->refresh();
    QVERIFY(!before.isEmpty());
    QCOMPARE(fileBytes(databasePath), before);
    QCOMPARE(QDir{screen->home.path(u"Pictures/Quilmora/coverimg"_s)}.entryList(QDir::Files).size(), 3);
}

int main(int argc, char **argv)
{
    return runScreenTest<HistoryListViewTest>(argc, argv);
}
#include "HistoryListViewTest.moc"
