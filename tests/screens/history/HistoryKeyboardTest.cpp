#include "support/HistoryScreen.h"
#include "support/ScreenCapture.h"

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

    void theArrowKeysGoFromTileToTile()
    {
        struct Step {
            int from;
            Qt::Key key;
            int to;
        };
        // Of 23 tiles in rows of four, of which two are in sight.
        const QList<Step> steps{
            {0, Qt::Key_Right, 1},  {3, Qt::Key_Right, 4}, {22, Qt::Key_Right, 22}, {5, Qt::Key_Left, 4},
            {0, Qt::Key_Left, 0},   {2, Qt::Key_Down, 6},  {19, Qt::Key_Down, 22},  {6, Qt::Key_Up, 2},
            {2, Qt::Key_Up, 2},     {2, Qt::Key_End, 22},  {20, Qt::Key_Home, 0},   {1, Qt::Key_PageDown, 9},
            {9, Qt::Key_PageUp, 1},
        };
        m_screen->window.resize(1000, 80 + 2 * (m_screen->tileRect(4).top() - m_screen->tileRect(0).top()));
        m_screen->grid()->setFocus();
        for (const auto &[from, key, to] : steps) {
            m_screen->grid()->setCurrentIndex(m_screen->grid()->model()->index(from, 0));
            QTest::keyClick(m_screen->grid(), key);
            const int reached = m_screen->grid()->currentIndex().row();
            QVERIFY2(reached == to, qPrintable(u"from %1 to %2"_s.arg(from).arg(reached)));
            QVERIFY(m_screen->grid()->viewport()->rect().contains(m_screen->tileRect(to)));
        }
    }

    void theTileWithTheFocusIsInSightAndHasARingUnlessItWasClicked()
    {
        const QImage before = m_screen->picture();
        QVERIFY(m_screen->opensPreview(1));
        QVERIFY(HistoryScreen::closesPreview());
        QVERIFY(m_screen->waitUntilFilled());
        QCOMPARE(m_screen->picture(), before);
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

    void returnAndSpaceOpenThePreview()
    {
        m_screen->grid()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(m_screen->grid(), Qt::Key_Right);
        QCOMPARE(m_screen->grid()->currentIndex().row(), 1);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            QTest::keyClick(m_screen->grid(), key);
            QTRY_VERIFY2(HistoryScreen::preview() != nullptr, qPrintable(QKeySequence{key}.toString()));
            QVERIFY(HistoryScreen::inPreview(m_screen->nameOf(1)) != nullptr);
            QVERIFY(HistoryScreen::closesPreview());
        }
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

    void aScreenReaderSaysTheTileThatGetsTheFocus()
    {
        for (const auto reason : {Qt::TabFocusReason, Qt::OtherFocusReason, Qt::ActiveWindowFocusReason}) {
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
            const bool isTile = QTest::qWaitFor([this] { return said == m_screen->nameOf(2); });
            QCoreApplication::processEvents();
            QAccessible::installUpdateHandler(former);
            QVERIFY2(isTile, qPrintable(said));
            QCOMPARE(said, m_screen->nameOf(2));
        }
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
