#include "app/NavTabButton.h"

#include "app/TopNavigationBar.h"
#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QVBoxLayout>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The faces of the tab buttons on the bar.
class NavTabButtonTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theTabsStandInOrderWithTheirIconsOnTheLeft();
    void theSelectedTabIsFilledWithTheAccentColour();
    void hoveringFillsAnUnselectedTabFaintly();
    void arrowKeysMoveTheFocusAndSelectNothing();
    void spaceAndReturnSelectTheFocusedTab();
    void hoveringChangesNothingOnTheSelectedTab();

private:
    NavTabButton *button(const QString &title) { return accessible::find<NavTabButton>(window.get(), title); }
    QColor fill(const QString &title);
    const QList<NavigationTab> &watchChoices();

    std::unique_ptr<QWidget> window;
    QList<NavigationTab> choices;
};

namespace
{

const QStringList &titles()
{
    static const QStringList all{u"生成封面"_s, u"已生成列表"_s, u"功能设置"_s, u"帮助说明"_s};
    return all;
}

} // namespace

void NavTabButtonTest::init()
{
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    column->addWidget(new TopNavigationBar{NavigationTab::generate, window.get()});
    column->addStretch();
    showWindow(*window, {1000, 700});
    // Away from the tabs.
    QTest::mouseMove(window->windowHandle(), {500, 500});
    QCoreApplication::processEvents();
}

const QList<NavigationTab> &NavTabButtonTest::watchChoices()
{
    choices.clear();
    connect(window->findChild<TopNavigationBar *>(), &TopNavigationBar::tabChosen, this,
            [this](NavigationTab tab) { choices.append(tab); });
    return choices;
}

QColor NavTabButtonTest::fill(const QString &title)
{
    NavTabButton *tab = button(title);
    return screenCapture::colorAt(screenCapture::capture(tab), {5, tab->height() / 2.0});
}

void NavTabButtonTest::theTabsStandInOrderWithTheirIconsOnTheLeft()
{
    int right = 0;
    for (const QString &title : titles()) {
        NavTabButton *tab = button(title);
        QVERIFY(tab != nullptr);
        const int left = tab->mapTo(window.get(), QPoint{0, 0}).x();
        QVERIFY(left > right);
        right = left + tab->width();
    }
    // Symbol, gap and title: an unselected tab's face has ink, then an empty column 6 wide, then ink.
    NavTabButton *tab = button(u"已生成列表"_s);
    const QImage face = screenCapture::capture(tab);
    const auto inkIn = [&](int from, int width) {
        const QRect column{from, 0, width, face.height()};
        return column.width() * column.height() - screenCapture::countOf(face, Qt::transparent, column, 0);
    };
    QCOMPARE(inkIn(0, 14), 0);
    const int symbol = 17;
    QVERIFY(inkIn(14, symbol) > 0);
    QCOMPARE(inkIn(14 + symbol, 5), 0);
    QVERIFY(inkIn(14 + symbol + 6, 60) > 0);
}

void NavTabButtonTest::theSelectedTabIsFilledWithTheAccentColour()
{
    QCOMPARE(fill(u"生成封面"_s), QColor(0x007AFFU));
    const QImage face = screenCapture::capture(button(u"生成封面"_s));
    QVERIFY2(screenCapture::countOf(face, Qt::white, {}, 8) > 20, "symbol and title are white");
    QVERIFY2(qAlpha(face.pixel(0, 0)) == 0, "the corners are round");
    for (const QString &title : titles().sliced(1)) {
        QCOMPARE(fill(title).alpha(), 0);
        const QImage other = screenCapture::capture(button(title));
        QVERIFY(screenCapture::countOf(other, themeColor(ColorRole::primaryText), {}, 8) > 10);
        QCOMPARE(screenCapture::countOf(other, Qt::white, {}, 8), 0);
    }
}

void NavTabButtonTest::arrowKeysMoveTheFocusAndSelectNothing()
{
    const QList<NavigationTab> &chosen = watchChoices();
    button(titles().constFirst())->setFocus(Qt::TabFocusReason);
    const auto focusAfter = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        return QApplication::focusWidget()->accessibleName();
    };
    QCOMPARE(focusAfter(Qt::Key_Left), titles().at(0));
    QCOMPARE(focusAfter(Qt::Key_Right), titles().at(1));
    QVERIFY2(button(titles().at(1))->showsFocus(), "the focus ring shows where Space would choose");
    QCOMPARE(focusAfter(Qt::Key_Down), titles().at(2));
    QCOMPARE(focusAfter(Qt::Key_Right), titles().at(3));
    QCOMPARE(focusAfter(Qt::Key_Right), titles().at(3));
    QCOMPARE(focusAfter(Qt::Key_Up), titles().at(2));
    QCOMPARE(chosen.size(), 0);
    QVERIFY(button(titles().constFirst())->isChecked());
}

void NavTabButtonTest::spaceAndReturnSelectTheFocusedTab()
{
    const QList<NavigationTab> &chosen = watchChoices();
    button(titles().constFirst())->setFocus(Qt::TabFocusReason);
    for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        auto *focused = qobject_cast<NavTabButton *>(QApplication::focusWidget());
        QVERIFY(!focused->isChecked());
        QTest::keyClick(focused, key);
        QCOMPARE(chosen.constLast(), focused->tab());
        QVERIFY(focused->isChecked());
    }
}

void NavTabButtonTest::hoveringFillsAnUnselectedTabFaintly()
{
    NavTabButton *tab = button(u"功能设置"_s);
    QTest::mouseMove(window->windowHandle(), tab->mapTo(window.get(), tab->rect().center()));
    QTRY_VERIFY(fill(u"功能设置"_s).alpha() > 0);
    const QColor expected = screenCapture::srgb(0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 0.15);
    QVERIFY2(screenCapture::isClose(fill(u"功能设置"_s), expected, 4),
             qPrintable(screenCapture::text(fill(u"功能设置"_s))));
    QTest::mouseMove(window->windowHandle(), {500, 500});
    QTRY_COMPARE(fill(u"功能设置"_s).alpha(), 0);
}

void NavTabButtonTest::hoveringChangesNothingOnTheSelectedTab()
{
    NavTabButton *tab = button(u"生成封面"_s);
    const QImage before = screenCapture::capture(tab);
    QTest::mouseMove(window->windowHandle(), tab->mapTo(window.get(), tab->rect().center()));
    QTRY_VERIFY(tab->underMouse());
    QCOMPARE(screenCapture::capture(tab), before);
}

int main(int argc, char *argv[])
{
    return runScreenTest<NavTabButtonTest>(argc, argv);
}

#include "NavTabButtonTest.moc"
