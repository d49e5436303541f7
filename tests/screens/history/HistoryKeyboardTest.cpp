#include "support/HistoryScreen.h"
#include "support/ScreenCapture.h"
#include "support/TestProgram.h"

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
    void init()
    {
        m_screen = std::make_unique<HistoryScreen>();
        m_screen->addCovers(23);
        m_screen->open();
    }

    void cleanup() { m_screen.reset(); }

    void theTabKeyGoesFromRefreshToTheGrid()
    {
        QCOMPARE(accessible::focusOrder(&m_screen->window), (QStringList{texts::refresh, texts::history}));
        accessible::find(&m_screen->window, texts::refresh)->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(m_screen->grid()->hasFocus());
        QCOMPARE(m_screen->grid()->currentIndex().row(), 0);
        // One more and the grid is left: the arrow keys go about in it.
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(!m_screen->grid()->hasFocus());
    }

    void theArrowKeysGoFromTileToTile_data()
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

    void theArrowKeysGoFromTileToTile()
    {
        QFETCH(const int, from);
        QFETCH(const Qt::Key, key);
        QFETCH(const int, to);
        m_screen->window.resize(1000, 80 + 2 * (m_screen->tileRect(4).top() - m_screen->tileRect(0).top()));
        m_screen->grid()->setFocus();
        m_screen->grid()->setCurrentIndex(m_screen->grid()->model()->index(from, 0));
        QTest::keyClick(m_screen->grid(), key);
        QCOMPARE(m_screen->grid()->currentIndex().row(), to);
        const QRect tile = m_screen->tileRect(to);
        QVERIFY(m_screen->grid()->viewport()->rect().contains(tile));
    }

    void theTileWithTheFocusIsInSightAndHasARing()
    {
        m_screen->grid()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(m_screen->grid(), Qt::Key_End);
        QVERIFY(m_screen->waitUntilFilled());
        const QRect tile = m_screen->tileRect(22);
        QVERIFY(m_screen->grid()->viewport()->rect().contains(tile));
        const QImage with = m_screen->picture().copy(tile);
        QTest::keyClick(m_screen->grid(), Qt::Key_Left);
        const QImage without = m_screen->picture().copy(tile);
        QVERIFY(with != without);
        // Over the red picture the ring's blue shows.
        const QPoint edge{1, tile.width() / 2};
        QVERIFY2(with.pixelColor(edge).blue() > without.pixelColor(edge).blue() + 60,
                 qPrintable(screenCapture::text(with.pixelColor(edge))));
    }

    void aTileThatWasClickedHasNoRing()
    {
        const QImage before = m_screen->picture();
        QVERIFY(m_screen->opensPreview(1));
        QTest::keyClick(HistoryScreen::preview(), Qt::Key_Escape);
        QTRY_VERIFY(HistoryScreen::preview() == nullptr);
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(m_screen->picture(), before);
    }

    void returnAndSpaceOpenThePreview_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("return") << Qt::Key_Return;
        QTest::newRow("enter") << Qt::Key_Enter;
        QTest::newRow("space") << Qt::Key_Space;
    }

    void returnAndSpaceOpenThePreview()
    {
        QFETCH(const Qt::Key, key);
        m_screen->grid()->setFocus();
        QTest::keyClick(m_screen->grid(), Qt::Key_Right);
        QTest::keyClick(m_screen->grid(), key);
        QTRY_VERIFY(HistoryScreen::preview() != nullptr);
        QVERIFY(HistoryScreen::inPreview(m_screen->tile(1)->text(QAccessible::Name)) != nullptr ||
                HistoryScreen::inPreview(m_screen->tile(0)->text(QAccessible::Name)) != nullptr);
    }

    void aTileTellsTheAccessibilityBusItsPromptAndPlace()
    {
        QAccessibleInterface *list = accessible::interfaceOf(m_screen->grid());
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->childCount(), 23);
        for (const int position : {0, 5, 22}) {
            QAccessibleInterface *tile = list->child(position);
            QCOMPARE(tile->role(), QAccessible::ListItem);
            QCOMPARE(tile->text(QAccessible::Name), u"提示词 %1.png"_s.arg(position));
            QCOMPARE(tile->parent(), list);
            QCOMPARE(list->indexOfChild(tile), position);
            QCOMPARE(list->child(position), tile);
            const QPoint corner =
                m_screen->grid()->viewport()->mapToGlobal(m_screen->tileRect(position).topLeft());
            QCOMPARE(tile->rect(), QRect(corner, m_screen->tileRect(position).size()));
        }
        QVERIFY(!list->child(0)->state().offscreen);
        QVERIFY(list->child(22)->state().offscreen);
        QVERIFY(list->child(23) == nullptr);
        const QPoint inside = list->child(2)->rect().center();
        QCOMPARE(list->childAt(inside.x(), inside.y()), list->child(2));
    }

    void aScreenReaderCanFocusAndPressATile()
    {
        QAccessibleActionInterface *actions = m_screen->tile(6)->actionInterface();
        QVERIFY(actions != nullptr);
        actions->doAction(QAccessibleActionInterface::setFocusAction());
        QVERIFY(m_screen->tile(6)->state().focused);
        QVERIFY(!m_screen->tile(5)->state().focused);
        QCOMPARE(accessible::interfaceOf(m_screen->grid())->focusChild(), m_screen->tile(6));
        QVERIFY(HistoryScreen::preview() == nullptr);
        actions->doAction(QAccessibleActionInterface::pressAction());
        QTRY_VERIFY(HistoryScreen::preview() != nullptr);
        QVERIFY(HistoryScreen::inPreview(u"提示词 6.png"_s) != nullptr);
    }

    void aScreenReaderSaysTheTileThatGetsTheFocus_data()
    {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::newRow("by the Tab key") << Qt::TabFocusReason;
        QTest::newRow("by the program") << Qt::OtherFocusReason;
        QTest::newRow("with its window") << Qt::ActiveWindowFocusReason;
    }

    void aScreenReaderSaysTheTileThatGetsTheFocus()
    {
        QFETCH(const Qt::FocusReason, reason);
        m_screen->grid()->setFocus();
        m_screen->grid()->setCurrentIndex(m_screen->grid()->model()->index(2, 0));
        accessible::find(&m_screen->window, texts::refresh)->setFocus();
        QCoreApplication::processEvents();

        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
        static QString said;
        said.clear();
        const auto former = QAccessible::installUpdateHandler([](QAccessibleEvent *event) {
            if (event->type() == QAccessible::Focus) {
                said = event->accessibleInterface()->text(QAccessible::Name);
            }
        });
        m_screen->grid()->setFocus(reason);
        // The grid itself may be said before.
        const bool isTile =
            QTest::qWaitFor([this] { return said == m_screen->tile(2)->text(QAccessible::Name); });
        QCoreApplication::processEvents();
        QAccessible::installUpdateHandler(former);
        QVERIFY2(isTile, qPrintable(said));
        QCOMPARE(said, m_screen->tile(2)->text(QAccessible::Name));
    }

    void tilesThatAreGoneAreInvalid()
    {
        QAccessibleInterface *last = m_screen->tile(22);
        QVERIFY(last->isValid());
        m_screen->database.deleteHistory(1);
        m_screen->refresh();
        QVERIFY(!last->isValid());
        QCOMPARE(last->text(QAccessible::Name), QString{});
        QVERIFY(m_screen->tile(22) == nullptr);
    }

private:
    std::unique_ptr<HistoryScreen> m_screen;
};

QUILMORA_TEST(HistoryKeyboardTest, runScreenTest)
#include "HistoryKeyboardTest.moc"
