#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "app/TopNavigationBar.h"
#include "support/AccessibleFinder.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/widgets/LogoView.h"

#include <QSignalSpy>
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

/// The bar above every screen: its numbers, read from what is drawn, and its tabs under mouse and keyboard.
class TopBarTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window =
            std::make_unique<MainView>([](NavigationTab, QWidget *parent) { return new QWidget{parent}; });
        showWindow(*m_window, {1000, 700});
        movePointer({500, 500}); // Away from the tabs.
        QCoreApplication::processEvents();
    }

    void cleanup() { m_window.reset(); }

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

    void arrowKeysMoveTheFocusAndSelectNothing()
    {
        const QSignalSpy chosen{m_window->findChild<TopNavigationBar *>(), &TopNavigationBar::tabChosen};
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
        QCOMPARE(chosen.size(), 0);
        QVERIFY(tab(0)->isChecked());
    }

    void spaceAndReturnSelectTheFocusedTab()
    {
        QList<NavigationTab> chosen;
        connect(m_window->findChild<TopNavigationBar *>(), &TopNavigationBar::tabChosen, this,
                [&chosen](NavigationTab tab) { chosen.append(tab); });
        tab(0)->setFocus(Qt::TabFocusReason);
        for (const auto key : {Qt::Key_Space, Qt::Key_Return}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
            auto *focused = qobject_cast<NavTabButton *>(QApplication::focusWidget());
            QVERIFY(!focused->isChecked());
            QTest::keyClick(focused, key);
            QCOMPARE(chosen.constLast(), focused->tab());
            QVERIFY(focused->isChecked());
        }
    }

private:
    NavTabButton *tab(int index)
    {
        return accessible::find<NavTabButton>(m_window.get(), m_tabs.at(index).rawValue());
    }
    void movePointer(QPoint place) { QTest::mouseMove(m_window->windowHandle(), place); }

    const QList<NavigationTab> &m_tabs = NavigationTab::allCases();
    std::unique_ptr<MainView> m_window;
};

QUILMORA_TEST(TopBarTest, runScreenTest)

#include "TopBarTest.moc"
