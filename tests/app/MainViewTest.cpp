#include "app/MainView.h"

#include "app/NavTabButton.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The main window around screens that hold one field each.
class MainViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_made.clear();
        m_window = std::make_unique<MainView>([this](NavigationTab tab, QWidget *parent) -> QWidget * {
            m_made.append(tab);
            auto *field = new QLineEdit{parent};
            field->setAccessibleName(u"field"_s);
            field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
            m_screen = field;
            return field;
        });
        showWindow(*m_window, {1000, 700});
        // Away from the tabs.
        QTest::mouseMove(m_window->windowHandle(), {500, 500});
        QCoreApplication::processEvents();
    }

    void cleanup() { m_window.reset(); }

    void theWindowHasItsTitleAndLeastSize()
    {
        QCOMPARE(m_window->windowTitle(), u"Quilmora"_s);
        QCOMPARE(m_window->minimumSize(), QSize(1000, 700));
        QCOMPARE(m_window->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
        m_window->resize(400, 300);
        QCOMPARE(m_window->size(), QSize(1000, 700));
        m_window->resize(1600, 1200);
        QCOMPARE(m_window->size(), QSize(1600, 1200));
    }

    void theLeastSizeFitsTheScreen()
    {
        const QList<QScreen *> screens = QGuiApplication::screens();
        const QSize small = screens.at(1)->availableSize();
        QCOMPARE(small, QSize(1024, 600));
        m_window->windowHandle()->setScreen(screens.at(1));
        QTRY_VERIFY(m_window->minimumHeight() <= small.height());
        // Some of it is for the frame.
        QVERIFY(m_window->minimumHeight() >= small.height() - 50);
        QCOMPARE(m_window->minimumWidth(), 1000);
        m_window->windowHandle()->setScreen(screens.at(0));
        QTRY_COMPARE(m_window->minimumSize(), QSize(1000, 700));
    }

    void theGenerateTabIsSelectedAtTheStart()
    {
        QCOMPARE(m_window->selectedTab(), NavigationTab::generate);
        QCOMPARE(checked(), QList<NavigationTab>{NavigationTab::generate});
        QCOMPARE(m_made, QList<NavigationTab>{NavigationTab::generate});
    }

    void exactlyOneTabIsCheckedAfterEveryClick()
    {
        QList<NavigationTab> tabs = NavigationTab::allCases();
        std::reverse(tabs.begin(), tabs.end());
        for (const NavigationTab tab : tabs) {
            click(button(tab));
            QCOMPARE(checked(), QList<NavigationTab>{tab});
            QCOMPARE(m_window->selectedTab(), tab);
        }
    }

    void aScreenGoesWithItsTabAndComesBackFresh()
    {
        const QPointer<QWidget> first{m_screen.data()};
        typeInto(m_screen, u"typed"_s);
        click(button(NavigationTab::help));
        QVERIFY(first.isNull());
        QCOMPARE(m_window->findChildren<QLineEdit *>().size(), 1);
        const QPointer<QWidget> second{m_screen.data()};
        click(button(NavigationTab::generate));
        QVERIFY(second.isNull());
        QCOMPARE(qobject_cast<QLineEdit *>(m_screen)->text(), QString{});
        QTRY_VERIFY(m_screen->isVisible());
        const QList<NavigationTab> expected{NavigationTab::generate, NavigationTab::help,
                                            NavigationTab::generate};
        QCOMPARE(m_made, expected);
    }

    void aClickOnTheSelectedTabChangesNothing()
    {
        typeInto(m_screen, u"typed"_s);
        const QPointer<QWidget> before{m_screen.data()};
        const QImage face = screenCapture::capture(button(NavigationTab::generate));
        click(button(NavigationTab::generate));
        QCOMPARE(m_screen, before);
        QCOMPARE(qobject_cast<QLineEdit *>(m_screen)->text(), u"typed"_s);
        QCOMPARE(checked(), QList<NavigationTab>{NavigationTab::generate});
        QCOMPARE(screenCapture::capture(button(NavigationTab::generate)), face);
    }

    void arrowKeysKeepTheScreen()
    {
        const QPointer<QWidget> before = m_screen;
        button(NavigationTab::generate)->setFocus(Qt::TabFocusReason);
        QTest::keyClick(button(NavigationTab::generate), Qt::Key_Right);
        QVERIFY(button(NavigationTab::history)->hasFocus());
        QCOMPARE(m_window->selectedTab(), NavigationTab::generate);
        QCOMPARE(m_screen, before.data());
        QTest::keyClick(button(NavigationTab::history), Qt::Key_Space);
        QCOMPARE(m_window->selectedTab(), NavigationTab::history);
        QVERIFY(before == nullptr);
    }

    void theScreenFillsTheWindowBelowTheBar()
    {
        // Bar 56, line 1.
        QCOMPARE(m_screen->geometry(), QRect(0, 57, 1000, 643));
        m_window->resize(1400, 900);
        QTRY_COMPARE(m_screen->geometry(), QRect(0, 57, 1400, 843));
    }

private:
    NavTabButton *button(NavigationTab tab)
    {
        return accessible::find<NavTabButton>(m_window.get(), tab.rawValue());
    }

    QList<NavigationTab> checked()
    {
        QList<NavigationTab> found;
        for (const NavigationTab tab : NavigationTab::allCases()) {
            const QAccessibleInterface *interface = accessible::interfaceOf(button(tab));
            if (interface->role() == QAccessible::RadioButton && interface->state().checked) {
                found.append(tab);
            }
        }
        return found;
    }

    std::unique_ptr<MainView> m_window;
    QList<NavigationTab> m_made;
    QPointer<QWidget> m_screen;
};

QUILMORA_TEST(MainViewTest, runScreenTest)

#include "MainViewTest.moc"
