#include "app/MainView.h"

#include "app/NavigationTab.h"
#include "app/TopNavigationBar.h"
#include "support/AccessibleFinder.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/widgets/LogoView.h"

#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <QTest>
#include <QWindow>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Beside the contents of a tab.
QColor fill(QWidget *tab)
{
    return screenCapture::colorAt(screenCapture::capture(tab), {5, tab->height() / 2.0});
}

} // namespace

/// The main window around screens that hold one field each, and the bar above them.
class MainViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_made.clear();
        m_window = std::make_unique<MainView>([this](NavigationTab tab, QWidget *parent) -> QWidget * {
            m_made.append(tab);
            m_screen = new QWidget{parent};
            new QLineEdit{m_screen};
            return m_screen;
        });
        showWindow(*m_window, {1000, 700});
        movePointer({500, 500}); // Away from the tabs.
        QCoreApplication::processEvents();
    }

    void cleanup() { m_window.reset(); }

    void theWindowHasItsTitleAndLeastSize()
    {
        QCOMPARE(m_made, QList<NavigationTab>{NavigationTab::generate});
        QCOMPARE(m_window->windowTitle(), u"Quilmora"_s);
        QCOMPARE(m_window->minimumSize(), QSize(1000, 700));
        QCOMPARE(m_window->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
        m_window->resize(400, 300);
        QCOMPARE(m_window->size(), QSize(1000, 700));
        // The screen fills the window below the bar of 56 and its line.
        QCOMPARE(m_screen->geometry(), QRect(0, 57, 1000, 643));
        m_window->resize(1600, 1200);
        QCOMPARE(m_window->size(), QSize(1600, 1200));
        QTRY_COMPARE(m_screen->geometry(), QRect(0, 57, 1600, 1143));
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

    void aScreenGoesWithItsTabAndComesBackFresh()
    {
        const QPointer<QWidget> first{m_screen.data()};
        typeInto(field(), u"typed"_s);
        click(tab(3));
        QVERIFY(first.isNull());
        QCOMPARE(m_window->findChildren<QLineEdit *>().size(), 1);
        const QPointer<QWidget> second{m_screen.data()};
        click(tab(0));
        QVERIFY(second.isNull());
        QCOMPARE(field()->text(), QString{});
        QTRY_VERIFY(m_screen->isVisible());
        const QList<NavigationTab> expected{NavigationTab::generate, NavigationTab::help,
                                            NavigationTab::generate};
        QCOMPARE(m_made, expected);
    }

    void aClickOnTheSelectedTabChangesNothing()
    {
        typeInto(field(), u"typed"_s);
        const QPointer<QWidget> before{m_screen.data()};
        const QImage face = screenCapture::capture(tab(0));
        click(tab(0));
        QCOMPARE(m_screen, before);
        QCOMPARE(field()->text(), u"typed"_s);
        QCOMPARE(checked(), QList<NavigationTab>{NavigationTab::generate});
        QCOMPARE(screenCapture::capture(tab(0)), face);
    }

    void brand()
    {
        auto *logo = m_window->findChild<LogoView *>();
        QCOMPARE(placement::inWindow(logo), QRect(8 + 20, (56 - 28) / 2, 28, 28));
        QCOMPARE(CornerShape{Drawing{logo}.pixmaps().constFirst().leftHalf()}.differenceFromCircle(6),
                 QString{});
        const Drawing drawn{m_window.get()};
        QCOMPARE(drawn.lookOf(u"Quilmora"_s), Drawing::look(18, QFont::DemiBold, ColorRole::primaryText));
        QCOMPARE(qRound(drawn.placeOf(u"Quilmora"_s).left()), 28 + 28 + 10);
        QVERIFY(std::abs(drawn.placeOf(u"Quilmora"_s).center().y() - 28) <= 1);
    }

    void tabGroup()
    {
        QWidget *group = tab(0)->parentWidget();
        QRect row;
        for (int i = 0; i < m_tabs.size(); ++i) {
            row |= tab(i)->geometry();
            if (i > 0) {
                QCOMPARE(placement::gapBeside(tab(i - 1), tab(i)), 4);
            }
        }
        QCOMPARE(placement::padding(group->rect(), row), u"4, 4, 4, 4"_s);
        QVERIFY(std::abs(2 * group->y() + group->height() - 56) <= 1);
        QCOMPARE(CornerShape{group}.differenceFromContinuous(10), QString{});
        QCOMPARE(screenCapture::colorAt(screenCapture::capture(group), {group->width() / 2.0, 2}),
                 QColor{Qt::white});
        // As much space left of the group, from the brand, as right of it, up to 100 and the bar's own 8.
        const QWidget *brand = m_window->findChild<LogoView *>()->parentWidget();
        const int right = 1000 - 8 - 100 - placement::inWindow(group).right() - 1;
        QVERIFY(std::abs(placement::gapBeside(brand, group) - right) <= 1);
    }

    void tabFaces()
    {
        for (int i = 0; i < m_tabs.size(); ++i) {
            const QString title = m_tabs.at(i).rawValue();
            const auto check = [&](const QColor &color, const QColor &ground) {
                const Drawing drawn{tab(i)};
                QCOMPARE(drawn.lookOf(title), Drawing::look(13, QFont::Medium, color));
                const QRectF symbol = drawn.symbol(m_tabs.at(i).iconName(), 13, QFont::Medium, color);
                QVERIFY(!symbol.isNull());
                const QRectF text = drawn.placeOf(title);
                QCOMPARE(qRound(text.left() - symbol.right()), 6);
                QCOMPARE(placement::padding(tab(i)->rect(), symbol.united(text)), u"14, 8, 14, 8"_s);
                QCOMPARE(fill(tab(i)), ground);
            };
            click(tab(i == 0 ? 1 : 0));
            check(themeColor(ColorRole::primaryText), QColor(0, 0, 0, 0));
            click(tab(i));
            check(Qt::white, QColor(0x007AFFU));
            QCOMPARE(CornerShape{tab(i)}.differenceFromContinuous(7), QString{});
        }
    }

    void hoveringFillsAnUnselectedTabFaintly()
    {
        QWidget *other = tab(2);
        movePointer(placement::inWindow(other).center());
        QTRY_VERIFY(fill(other).alpha() > 0);
        const QColor expected = screenCapture::srgb(0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 0.15);
        QVERIFY2(screenCapture::isClose(fill(other), expected, 4),
                 qPrintable(screenCapture::text(fill(other))));
        QCOMPARE(CornerShape{other}.differenceFromContinuous(7), QString{});
        const QImage before = screenCapture::capture(tab(0));
        movePointer(placement::inWindow(tab(0)).center());
        QTRY_COMPARE(fill(other).alpha(), 0);
        QTRY_VERIFY(tab(0)->underMouse());
        QCOMPARE(screenCapture::capture(tab(0)), before);
    }

    void barAndLine()
    {
        const QImage whole = screenCapture::capture(m_window.get());
        const QColor line = whole.pixelColor(900, 56);
        QVERIFY2(screenCapture::isClose(line, QColor{212, 212, 212}), qPrintable(screenCapture::text(line)));
        for (const int y : {0, 3, 55, 57, 699}) {
            QCOMPARE(whole.pixelColor(900, y), QColor{0xECECECU});
        }
        QVERIFY(screenCapture::isPlain(whole, {0, 56, 1000, 1}, line));
    }

    void exactlyOneTabIsSelected()
    {
        QList<NavigationTab> chosen{NavigationTab::generate};
        connect(m_window->findChild<TopNavigationBar *>(), &TopNavigationBar::tabChosen, this,
                [&chosen](NavigationTab tab) { chosen.append(tab); });
        const auto isSelected = [&](NavigationTab tab) {
            return m_window->selectedTab() == tab && checked() == QList{tab} && chosen.constLast() == tab;
        };
        QVERIFY(isSelected(NavigationTab::generate));
        for (int i = static_cast<int>(m_tabs.size()) - 1; i >= 0; --i) {
            click(tab(i));
            QVERIFY2(isSelected(m_tabs.at(i)), qPrintable(m_tabs.at(i).rawValue()));
        }
        // Arrow keys move the focus and select nothing.
        const QPointer<QWidget> before = m_screen;
        const qsizetype count = chosen.size();
        tab(0)->setFocus(Qt::TabFocusReason);
        const auto press = [](Qt::Key key) {
            QTest::keyClick(QApplication::focusWidget(), key);
        };
        press(Qt::Key_Left);
        QVERIFY(tab(0)->hasFocus());
        for (int i = 1; i < m_tabs.size(); ++i) {
            press(i % 2 == 0 ? Qt::Key_Down : Qt::Key_Right);
            QVERIFY2(tab(i)->showsFocus(), "the focus ring shows where Space would choose");
        }
        const int last = static_cast<int>(m_tabs.size()) - 1;
        press(Qt::Key_Right);
        QVERIFY(tab(last)->hasFocus());
        press(Qt::Key_Up);
        QVERIFY(tab(last - 1)->hasFocus());
        QCOMPARE(chosen.size(), count);
        QVERIFY(isSelected(NavigationTab::generate));
        QCOMPARE(m_screen, before);
        // Space and Return select.
        press(Qt::Key_Space);
        QVERIFY(isSelected(m_tabs.at(last - 1)));
        QVERIFY(before == nullptr);
        press(Qt::Key_Up);
        press(Qt::Key_Return);
        QVERIFY(isSelected(m_tabs.at(last - 2)));
    }

    void everyTabHasItsTitleIdAndIcon()
    {
        // In the order of their buttons.
        const QList<std::pair<QString, QString>> expected{
            {u"生成封面"_s, u"sparkles"_s},
            {u"已生成列表"_s, u"rectangle.grid.3x2"_s},
            {u"功能设置"_s, u"gearshape"_s},
            {u"帮助说明"_s, u"questionmark.circle"_s},
        };
        QList<std::pair<QString, QString>> found;
        for (const NavigationTab tab : NavigationTab::allCases()) {
            found.append({tab.rawValue(), tab.iconName()});
            QCOMPARE(tab.id(), tab.rawValue());
            QVERIFY2(QFile::exists(u":/symbols/%1.svg"_s.arg(tab.iconName())), "the symbol is drawn");
            QVERIFY(NavigationTab::fromRawValue(tab.rawValue()) == std::optional{tab});
        }
        QCOMPARE(found, expected);
        const QString title = expected.constFirst().first;
        for (const QString &text :
             {QString{}, u"历史"_s, QString{title + u' '}, title.left(2), u"generate"_s}) {
            QVERIFY2(!NavigationTab::fromRawValue(text).has_value(), qPrintable(text));
        }
        // They are equal and hashed by their titles.
        const NavigationTab first = NavigationTab::settings;
        const NavigationTab second = *NavigationTab::fromRawValue(first.rawValue());
        QVERIFY(first == second);
        QVERIFY(first != NavigationTab::help);
        QCOMPARE(qHash(first), qHash(second));
        QCOMPARE(qHash(first), qHash(first.rawValue()));
        const QSet<NavigationTab> set{first, second, NavigationTab::help};
        QCOMPARE(set.size(), 2);
    }

private:
    QLineEdit *field() { return m_screen->findChild<QLineEdit *>(); }

    QList<NavigationTab> checked()
    {
        QList<NavigationTab> found;
        for (int i = 0; i < m_tabs.size(); ++i) {
            const QAccessibleInterface *interface = accessible::interfaceOf(tab(i));
            if (interface->role() == QAccessible::RadioButton && interface->state().checked) {
                found.append(m_tabs.at(i));
            }
        }
        return found;
    }

    NavTabButton *tab(int index)
    {
        return accessible::find<NavTabButton>(m_window.get(), m_tabs.at(index).rawValue());
    }
    void movePointer(QPoint place) { QTest::mouseMove(m_window->windowHandle(), place); }

    const QList<NavigationTab> &m_tabs = NavigationTab::allCases();
    std::unique_ptr<MainView> m_window;
    QList<NavigationTab> m_made;
    QPointer<QWidget> m_screen;
};

QUILMORA_TEST(MainViewTest, runScreenTest)
#include "MainViewTest.moc"
