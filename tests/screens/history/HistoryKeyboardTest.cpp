#include "HistoryScreen.h"
#include "support/ScreenCapture.h"

#include <QAbstractButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <private/qguiapplication_p.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class HistoryKeyboardTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { screen.reset(); }
    void theTabKeyGoesFromRefreshToTheGrid();
    void theArrowKeysGoFromTileToTile_data();
    void theArrowKeysGoFromTileToTile();
    void theTileWithTheFocusIsInSightAndHasARing();
    void aTileThatWasClickedHasNoRing();
    void returnAndSpaceOpenThePreview_data();
    void returnAndSpaceOpenThePreview();
    void aTileTellsTheAccessibilityBusItsPromptAndPlace();
    void aScreenReaderCanFocusAndPressATile();
    void aScreenReaderSaysTheTileThatGetsTheFocus_data();
    void aScreenReaderSaysTheTileThatGetsTheFocus();
    void tilesThatAreGoneAreInvalid();

private:
    std::unique_ptr<HistoryScreen> screen;
};

void HistoryKeyboardTest::init()
{
    screen = std::make_unique<HistoryScreen>();
    screen->addCovers(23);
    screen->open();
}

void HistoryKeyboardTest::theTabKeyGoesFromRefreshToTheGrid()
{
    QCOMPARE(accessible::focusOrder(&screen->window), (QStringList{u"刷新"_s, u"已生成列表"_s}));
    accessible::find<QAbstractButton>(&screen->window, u"刷新"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(screen->grid()->hasFocus());
    QCOMPARE(screen->grid()->currentIndex().row(), 0);
    // One more and the grid is left: the arrow keys go about in it.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(!screen->grid()->hasFocus());
}

void HistoryKeyboardTest::theArrowKeysGoFromTileToTile_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("to");
    QTest::newRow("right") << 0 << Qt::Key_Right << 1;
    QTest::newRow("right at the end of a row") << 3 << Qt::Key_Right << 4;
    QTest::newRow("left") << 5 << Qt::Key_Left << 4;
    QTest::newRow("left at the start") << 0 << Qt::Key_Left << 0;
    QTest::newRow("down") << 2 << Qt::Key_Down << 6;
    QTest::newRow("down to a shorter row") << 19 << Qt::Key_Down << 22;
    QTest::newRow("up") << 6 << Qt::Key_Up << 2;
    QTest::newRow("up in the first row") << 2 << Qt::Key_Up << 2;
    QTest::newRow("right at the end") << 22 << Qt::Key_Right << 22;
    QTest::newRow("end") << 2 << Qt::Key_End << 22;
    QTest::newRow("home") << 20 << Qt::Key_Home << 0;
    QTest::newRow("page down") << 1 << Qt::Key_PageDown << 9;
    QTest::newRow("page up") << 9 << Qt::Key_PageUp << 1;
}

void HistoryKeyboardTest::theArrowKeysGoFromTileToTile()
{
    QFETCH(const int, from);
    QFETCH(const Qt::Key, key);
    QFETCH(const int, to);
    screen->window.resize(1000, 80 + 2 * (screen->tileRect(4).top() - screen->tileRect(0).top()));
    screen->grid()->setFocus();
    screen->grid()->setCurrentIndex(screen->grid()->model()->index(from, 0));
    QTest::keyClick(screen->grid(), key);
    QCOMPARE(screen->grid()->currentIndex().row(), to);
    const QRect tile = screen->tileRect(to);
    QVERIFY(screen->grid()->viewport()->rect().contains(tile));
}

void HistoryKeyboardTest::theTileWithTheFocusIsInSightAndHasARing()
{
    screen->grid()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(screen->grid(), Qt::Key_End);
    QVERIFY(screen->waitUntilFilled());
    const QRect tile = screen->tileRect(22);
    QVERIFY(screen->grid()->viewport()->rect().contains(tile));
    const QImage with = screen->picture().copy(tile);
    QTest::keyClick(screen->grid(), Qt::Key_Left);
    const QImage without = screen->picture().copy(tile);
    QVERIFY(with != without);
    // Over the red picture the ring's blue shows.
    const QPoint edge{1, tile.width() / 2};
    QVERIFY2(with.pixelColor(edge).blue() > without.pixelColor(edge).blue() + 60,
             qPrintable(screenCapture::text(with.pixelColor(edge))));
}

void HistoryKeyboardTest::aTileThatWasClickedHasNoRing()
{
    const QImage before = screen->picture();
    screen->clickTile(1);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    QTest::keyClick(HistoryScreen::preview(), Qt::Key_Escape);
    QTRY_VERIFY(HistoryScreen::preview() == nullptr);
    QVERIFY(screen->waitUntilFilled());
    QCOMPARE(screen->picture(), before);
}

void HistoryKeyboardTest::returnAndSpaceOpenThePreview_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
}

void HistoryKeyboardTest::returnAndSpaceOpenThePreview()
{
    QFETCH(const Qt::Key, key);
    screen->grid()->setFocus();
    QTest::keyClick(screen->grid(), Qt::Key_Right);
    QTest::keyClick(screen->grid(), key);
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    QVERIFY(accessible::find(HistoryScreen::preview(), screen->tile(1)->text(QAccessible::Name)) != nullptr ||
            accessible::find(HistoryScreen::preview(), screen->tile(0)->text(QAccessible::Name)) != nullptr);
}

void HistoryKeyboardTest::aTileTellsTheAccessibilityBusItsPromptAndPlace()
{
    QAccessibleInterface *list = accessible::interfaceOf(screen->grid());
    QCOMPARE(list->role(), QAccessible::List);
    QCOMPARE(list->childCount(), 23);
    for (const int position : {0, 5, 22}) {
        QAccessibleInterface *tile = list->child(position);
        QCOMPARE(tile->role(), QAccessible::ListItem);
        QCOMPARE(tile->text(QAccessible::Name), u"提示词 %1.png"_s.arg(position));
        QCOMPARE(tile->parent(), list);
        QCOMPARE(list->indexOfChild(tile), position);
        QCOMPARE(list->child(position), tile);
        const QPoint corner = screen->grid()->viewport()->mapToGlobal(screen->tileRect(position).topLeft());
        QCOMPARE(tile->rect(), QRect(corner, screen->tileRect(position).size()));
    }
    QVERIFY(!list->child(0)->state().offscreen);
    QVERIFY(list->child(22)->state().offscreen);
    QVERIFY(list->child(23) == nullptr);
    const QPoint inside = list->child(2)->rect().center();
    QCOMPARE(list->childAt(inside.x(), inside.y()), list->child(2));
}

void HistoryKeyboardTest::aScreenReaderCanFocusAndPressATile()
{
    QAccessibleActionInterface *actions = screen->tile(6)->actionInterface();
    QVERIFY(actions != nullptr);
    actions->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(screen->tile(6)->state().focused);
    QVERIFY(!screen->tile(5)->state().focused);
    QCOMPARE(accessible::interfaceOf(screen->grid())->focusChild(), screen->tile(6));
    QVERIFY(HistoryScreen::preview() == nullptr);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY(HistoryScreen::preview() != nullptr);
    QVERIFY(accessible::find(HistoryScreen::preview(), u"提示词 6.png"_s) != nullptr);
}

void HistoryKeyboardTest::aScreenReaderSaysTheTileThatGetsTheFocus_data()
{
    QTest::addColumn<Qt::FocusReason>("reason");
    QTest::newRow("by the Tab key") << Qt::TabFocusReason;
    QTest::newRow("by the program") << Qt::OtherFocusReason;
    QTest::newRow("with its window") << Qt::ActiveWindowFocusReason;
}

void HistoryKeyboardTest::aScreenReaderSaysTheTileThatGetsTheFocus()
{
    QFETCH(const Qt::FocusReason, reason);
    screen->grid()->setFocus();
    screen->grid()->setCurrentIndex(screen->grid()->model()->index(2, 0));
    accessible::find<QAbstractButton>(&screen->window, u"刷新"_s)->setFocus();
    QCoreApplication::processEvents();

    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    static QString said;
    said.clear();
    const auto former = QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
        if (event->type() == QAccessible::Focus) {
            said = event->accessibleInterface()->text(QAccessible::Name);
        }
    });
    screen->grid()->setFocus(reason);
    // The grid itself may be said before.
    const bool isTile = QTest::qWaitFor([this] { return said == screen->tile(2)->text(QAccessible::Name); });
    QCoreApplication::processEvents();
    QAccessible::installUpdateHandler(former);
    QVERIFY2(isTile, qPrintable(said));
    QCOMPARE(said, screen->tile(2)->text(QAccessible::Name));
}

void HistoryKeyboardTest::tilesThatAreGoneAreInvalid()
{
    QAccessibleInterface *last = screen->tile(22);
    QVERIFY(last->isValid());
    screen->database.deleteHistory(1);
    screen->refresh();
    QVERIFY(!last->isValid());
    QCOMPARE(last->text(QAccessible::Name), QString{});
    QVERIFY(screen->tile(22) == nullptr);
}

int main(int argc, char **argv)
{
    return runScreenTest<HistoryKeyboardTest>(argc, argv);
}
#include "HistoryKeyboardTest.moc"
