#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "screens/common/LogoView.h"
#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QWindow>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// Beside the contents of a tab.
QColor fill(QWidget *tab)
{
    return screenCapture::colorAt(screenCapture::capture(tab), {5, tab->height() / 2.0});
}

} // namespace

/// The numbers of the window's frame around a screen: top bar, tabs and line, read from what is drawn.
class TopBarMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void brand();
    void tabGroup();
    void tabButtonContents_data();
    void tabButtonContents();
    void tabButtonShape();
    void barAndLine();

private:
    QWidget *tab(const QString &title) { return accessible::find<NavTabButton>(window.get(), title); }

    std::unique_ptr<MainView> window;
};

void TopBarMeasuresTest::init()
{
    window = std::make_unique<MainView>([](NavigationTab, QWidget *parent) { return new QWidget{parent}; });
    showWindow(*window, {1000, 700});
    // Away from the tabs.
    QTest::mouseMove(window->windowHandle(), {500, 500});
    QCoreApplication::processEvents();
}

void TopBarMeasuresTest::brand()
{
    auto *logo = window->findChild<LogoView *>();
    QCOMPARE(placement::inWindow(logo), QRect(8 + 20, (56 - 28) / 2, 28, 28));
    const QImage picture = Drawing{logo}.pixmaps().constFirst().pixmap.toImage();
    QCOMPARE(CornerShape{picture.copy(0, 0, 14, 28)}.differenceFromCircle(6), QString{});
    const Drawing drawn{window.get()};
    QCOMPARE(drawn.lookOf(u"Quilmora"_s),
             Drawing::look(18, QFont::DemiBold, themeColor(ColorRole::primaryText)));
    QCOMPARE(qRound(drawn.placeOf(u"Quilmora"_s).left()), 28 + 28 + 10);
    QVERIFY(std::abs(drawn.placeOf(u"Quilmora"_s).center().y() - 28) <= 1);
}

void TopBarMeasuresTest::tabGroup()
{
    QWidget *group = tab(u"生成封面"_s)->parentWidget();
    const QList<QWidget *> tabs{tab(u"生成封面"_s), tab(u"已生成列表"_s), tab(u"功能设置"_s),
                                tab(u"帮助说明"_s)};
    QRect row;
    for (int i = 0; i < tabs.size(); ++i) {
        row |= tabs.at(i)->geometry();
        if (i > 0) {
            QCOMPARE(placement::gapBeside(tabs.at(i - 1), tabs.at(i)), 4);
        }
    }
    QCOMPARE(placement::padding(group->rect(), row), u"4, 4, 4, 4"_s);
    QCOMPARE(CornerShape{group}.differenceFromContinuous(10), QString{});
    QCOMPARE(screenCapture::colorAt(screenCapture::capture(group), {group->width() / 2.0, 2}),
             QColor{Qt::white});
    // As much room left of the group, from the brand, as right of it, up to 100 and the bar's own 8.
    const QWidget *brand = window->findChild<LogoView *>()->parentWidget();
    const int right = 1000 - 8 - 100 - placement::inWindow(group).right() - 1;
    QVERIFY(std::abs(placement::gapBeside(brand, group) - right) <= 1);
}

void TopBarMeasuresTest::tabButtonContents_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("icon");
    QTest::newRow("generate") << u"生成封面"_s << u"sparkles"_s;
    QTest::newRow("history") << u"已生成列表"_s << u"rectangle.grid.3x2"_s;
    QTest::newRow("settings") << u"功能设置"_s << u"gearshape"_s;
    QTest::newRow("help") << u"帮助说明"_s << u"questionmark.circle"_s;
}

void TopBarMeasuresTest::tabButtonContents()
{
    QFETCH(const QString, title);
    QFETCH(const QString, icon);
    QWidget *button = tab(title);
    const auto check = [&](const QColor &color) {
        const Drawing drawn{button};
        QCOMPARE(drawn.lookOf(title), Drawing::look(13, QFont::Medium, color));
        const QRectF symbol = drawn.symbol(icon, 13, QFont::Medium, color);
        QVERIFY(!symbol.isNull());
        const QRectF text = drawn.placeOf(title);
        QCOMPARE(qRound(text.left() - symbol.right()), 6);
        QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"14, 8, 14, 8"_s);
    };
    click(tab(title == u"生成封面"_s ? u"帮助说明"_s : u"生成封面"_s));
    check(themeColor(ColorRole::primaryText));
    click(button);
    check(Qt::white);
}

void TopBarMeasuresTest::tabButtonShape()
{
    QWidget *selected = tab(u"生成封面"_s);
    QCOMPARE(CornerShape{selected}.differenceFromContinuous(7), QString{});
    QCOMPARE(fill(selected), themeColor(ColorRole::accent));
    QWidget *other = tab(u"功能设置"_s);
    QCOMPARE(fill(other).alpha(), 0);
    QTest::mouseMove(window->windowHandle(), placement::inWindow(other).center());
    QTRY_VERIFY(fill(other).alpha() > 0);
    QCOMPARE(fill(other).alpha(), qRound(0.15 * 255));
    QCOMPARE(CornerShape{other}.differenceFromContinuous(7), QString{});
}

void TopBarMeasuresTest::barAndLine()
{
    const QImage whole = screenCapture::capture(window.get());
    const QColor ground{0xECECECU};
    const QColor line = whole.pixelColor(900, 56);
    QVERIFY2(screenCapture::isClose(line, QColor{212, 212, 212}), qPrintable(screenCapture::text(line)));
    for (const int y : {0, 55, 57, 699}) {
        QCOMPARE(whole.pixelColor(900, y), ground);
    }
    QCOMPARE(screenCapture::countOf(whole, line, {0, 56, 1000, 1}), 1000);
}

int main(int argc, char *argv[])
{
    return runScreenTest<TopBarMeasuresTest>(argc, argv);
}

#include "TopBarMeasuresTest.moc"
