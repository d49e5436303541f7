#include "app/MainView.h"

#include "app/NavTabButton.h"
#include "screens/common/LogoView.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The main window around screens that hold one field each.
class MainViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theWindowHasItsTitleAndLeastSize();
    void theLeastSizeFitsTheScreen();
    void theGenerateTabIsSelectedAtTheStart();
    void exactlyOneTabIsCheckedAfterEveryClick();
    void aScreenGoesWithItsTabAndComesBackFresh();
    void aClickOnTheSelectedTabChangesNothing();
    void arrowKeysKeepTheScreen();
    void theScreenTakesAllTheRoomThereIs();
    void theBarIsLaidOutAsDrawn();

private:
    NavTabButton *button(const QString &title) { return accessible::find<NavTabButton>(window.get(), title); }
    QStringList checked();

    std::unique_ptr<MainView> window;
    QList<NavigationTab> made;
    QPointer<QWidget> screen;
};

namespace
{

const QStringList &titles()
{
    static const QStringList all{u"生成封面"_s, u"已生成列表"_s, u"功能设置"_s, u"帮助说明"_s};
    return all;
}

} // namespace

void MainViewTest::init()
{
    made.clear();
    window = std::make_unique<MainView>([this](NavigationTab tab, QWidget *parent) -> QWidget * {
        made.append(tab);
        auto *field = new QLineEdit{parent};
        field->setAccessibleName(u"field"_s);
        field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        screen = field;
        return field;
    });
    showWindow(*window, {1000, 700});
    // Away from the tabs.
    QTest::mouseMove(window->windowHandle(), {500, 500});
    QCoreApplication::processEvents();
}

QStringList MainViewTest::checked()
{
    QStringList found;
    for (const QString &title : titles()) {
        const QAccessibleInterface *interface = accessible::interfaceOf(button(title));
        if (interface->role() == QAccessible::RadioButton && interface->state().checked) {
            found.append(title);
        }
    }
    return found;
}

void MainViewTest::theLeastSizeFitsTheScreen()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    const QSize small = screens.at(1)->availableSize();
    QCOMPARE(small, QSize(1024, 600));
    window->windowHandle()->setScreen(screens.at(1));
    QTRY_VERIFY(window->minimumHeight() <= small.height());
    // Some of it is for the frame.
    QVERIFY(window->minimumHeight() >= small.height() - 50);
    QCOMPARE(window->minimumWidth(), 1000);
    window->windowHandle()->setScreen(screens.at(0));
    QTRY_COMPARE(window->minimumSize(), QSize(1000, 700));
}

void MainViewTest::theWindowHasItsTitleAndLeastSize()
{
    QCOMPARE(window->windowTitle(), u"Quilmora"_s);
    QCOMPARE(window->minimumSize(), QSize(1000, 700));
    QCOMPARE(window->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    window->resize(400, 300);
    QCOMPARE(window->size(), QSize(1000, 700));
    window->resize(1600, 1200);
    QCOMPARE(window->size(), QSize(1600, 1200));
}

void MainViewTest::theGenerateTabIsSelectedAtTheStart()
{
    QCOMPARE(window->selectedTab(), NavigationTab::generate);
    QCOMPARE(checked(), QStringList{u"生成封面"_s});
    QCOMPARE(made, QList<NavigationTab>{NavigationTab::generate});
}

void MainViewTest::exactlyOneTabIsCheckedAfterEveryClick()
{
    for (const QString &title : {u"帮助说明"_s, u"已生成列表"_s, u"功能设置"_s, u"生成封面"_s}) {
        click(button(title));
        QCOMPARE(checked(), QStringList{title});
        QCOMPARE(window->selectedTab().rawValue(), title);
    }
}

void MainViewTest::aScreenGoesWithItsTabAndComesBackFresh()
{
    const QPointer<QWidget> first{screen.data()};
    typeInto(screen, u"typed"_s);
    click(button(u"帮助说明"_s));
    QVERIFY(first.isNull());
    QCOMPARE(window->findChildren<QLineEdit *>().size(), 1);
    const QPointer<QWidget> second{screen.data()};
    click(button(u"生成封面"_s));
    QVERIFY(second.isNull());
    QCOMPARE(qobject_cast<QLineEdit *>(screen)->text(), QString{});
    QTRY_VERIFY(screen->isVisible());
    const QList<NavigationTab> expected{NavigationTab::generate, NavigationTab::help,
                                        NavigationTab::generate};
    QCOMPARE(made, expected);
}

void MainViewTest::aClickOnTheSelectedTabChangesNothing()
{
    typeInto(screen, u"typed"_s);
    const QPointer<QWidget> before{screen.data()};
    const QImage face = screenCapture::capture(button(u"生成封面"_s));
    click(button(u"生成封面"_s));
    QCOMPARE(screen, before);
    QCOMPARE(qobject_cast<QLineEdit *>(screen)->text(), u"typed"_s);
    QCOMPARE(checked(), QStringList{u"生成封面"_s});
    QCOMPARE(screenCapture::capture(button(u"生成封面"_s)), face);
}

void MainViewTest::arrowKeysKeepTheScreen()
{
    const QPointer<QWidget> before = screen;
    button(u"生成封面"_s)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button(u"生成封面"_s), Qt::Key_Right);
    QVERIFY(button(u"已生成列表"_s)->hasFocus());
    QCOMPARE(window->selectedTab(), NavigationTab::generate);
    QCOMPARE(screen, before.data());
    QTest::keyClick(button(u"已生成列表"_s), Qt::Key_Space);
    QCOMPARE(window->selectedTab(), NavigationTab::history);
    QVERIFY(before == nullptr);
}

void MainViewTest::theScreenTakesAllTheRoomThereIs()
{
    // Bar 56, line 1.
    QCOMPARE(screen->geometry(), QRect(0, 57, 1000, 643));
    window->resize(1400, 900);
    QTRY_COMPARE(screen->geometry(), QRect(0, 57, 1400, 843));
}

void MainViewTest::theBarIsLaidOutAsDrawn()
{
    auto *logo = window->findChild<LogoView *>();
    QCOMPARE(QRect(logo->mapTo(window.get(), QPoint{0, 0}), logo->size()), QRect(28, 14, 28, 28));
    const QWidget *group = button(u"生成封面"_s)->parentWidget();
    QVERIFY(std::abs(2 * group->y() + group->height() - 56) <= 1);
    const QWidget *first = button(u"生成封面"_s);
    QCOMPARE(first->pos(), QPoint(4, 4));
    QCOMPARE(button(u"已生成列表"_s)->x(), first->geometry().right() + 1 + 4);
    // The free room on both sides of the group is the same: 100 on the right stand against the brand.
    const QWidget *brand = logo->parentWidget();
    const int left = group->x() - brand->geometry().right() - 1;
    const int right = 1000 - 8 - 100 - group->geometry().right() - 1;
    QVERIFY(std::abs(left - right) <= 1);
    const QImage whole = screenCapture::capture(window.get());
    QCOMPARE(screenCapture::colorAt(whole, {500, 3}), QColor(0xECECECU));
}

int main(int argc, char *argv[])
{
    return runScreenTest<MainViewTest>(argc, argv);
}

#include "MainViewTest.moc"
