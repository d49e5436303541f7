#include "screens/common/Theme.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/ShadowFall.h"

#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QStyleOption>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// How menus are drawn, each test in both schemes and at one and two pixels for each point.
class MenuStyleTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup();
    void thePanelIsRoundWithAHairline();
    void theShadowLiesOnTheWindow();
    void theShadowTakesNoClicks();
    void theCornersShowWhatIsBehind();
    void thePaddingIsEvenAroundTheCommands();
    void separatorsAreInsetHairlines();
    void theHighlightIsARoundAccent();
    void theHighlightHasItsRadius();
    void theTextsAreInTheMiddleOfTheHighlight();
    void disabledCommandsAreNeverHighlighted();
    void theTextsHaveTheirFontAndColours();
    void theTextsAreInset();
    void lettersForTheKeyboardAreNotShown_data();
    void lettersForTheKeyboardAreNotShown();
    void thereIsNoRoomForIcons();
    void checkMarksAndArrowsHaveRoomWhereTheyAre();

private:
    QImage picture(double ratio = 0)
    {
        QFETCH_GLOBAL(const double, devicePixelRatio);
        return screenCapture::capture(menu.get(), ratio > 0 ? ratio : devicePixelRatio);
    }
    QColor colorAt(QPointF place, double ratio = 0) { return screenCapture::colorAt(picture(ratio), place); }
    void open(QPoint place = {})
    {
        menu->popup(window->mapToGlobal(place));
        QVERIFY(QTest::qWaitForWindowExposed(menu.get()));
    }

    std::unique_ptr<QWidget> window;
    std::unique_ptr<QMenu> menu;
    QAction *undo = nullptr;
    QAction *redo = nullptr;
    QAction *line = nullptr;
    QAction *erase = nullptr;
};

namespace
{

constexpr int cornerRadius = 6;
constexpr int padding = 5;
constexpr int textInset = 9;

QColor over(const QColor &top, const QColor &ground)
{
    QImage pixel{1, 1, QImage::Format_ARGB32_Premultiplied};
    pixel.fill(ground);
    QPainter{&pixel}.fillRect(0, 0, 1, 1, top);
    return pixel.pixelColor(0, 0);
}

} // namespace

void MenuStyleTest::initTestCase_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<double>("devicePixelRatio");
    QTest::newRow("light, one pixel") << ColorScheme::light << 1.0;
    QTest::newRow("light, two pixels") << ColorScheme::light << 2.0;
    QTest::newRow("dark, one pixel") << ColorScheme::dark << 1.0;
    QTest::newRow("dark, two pixels") << ColorScheme::dark << 2.0;
}

void MenuStyleTest::init()
{
    QFETCH_GLOBAL(const ColorScheme, scheme);
    Theme::current().setScheme(scheme);
    window = std::make_unique<QWidget>();
    showWindow(*window, {600, 400});
    menu = std::make_unique<QMenu>(window.get());
    undo = menu->addAction(u"撤销(&U)\tCtrl+Z"_s);
    redo = menu->addAction(u"重做(&R)\tCtrl+Shift+Z"_s);
    redo->setEnabled(false);
    line = menu->addSeparator();
    erase = menu->addAction(u"删除"_s);
}

void MenuStyleTest::cleanup()
{
    menu.reset();
    window.reset();
    Theme::current().setScheme(ColorScheme::light);
}

void MenuStyleTest::thePanelIsRoundWithAHairline()
{
    open();
    const QString difference = CornerShape{menu.get()}.differenceFromCircle(cornerRadius);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    const QColor ground = themeColor(ColorRole::menuBackground);
    const QPointF middle = QRectF{menu->rect()}.center();
    const QColor border = over(themeColor(ColorRole::controlBorder), ground);
    for (const double left : {0.25, 0.75}) {
        QVERIFY(screenCapture::isClose(colorAt({left, middle.y()}), border));
        QVERIFY(screenCapture::isClose(colorAt({menu->width() - left, middle.y()}), border));
        QVERIFY(screenCapture::isClose(colorAt({middle.x(), left}), border));
        QVERIFY(screenCapture::isClose(colorAt({middle.x(), menu->height() - left}), border));
    }
    QVERIFY(screenCapture::isClose(colorAt({1.25, middle.y()}), ground));
}

void MenuStyleTest::theShadowLiesOnTheWindow()
{
    constexpr QPoint place{100, 80};
    open(place);
    // The menu itself is no larger.
    QCOMPARE(menu->pos(), window->mapToGlobal(place));
    const QColor black = QColor::fromRgbF(0, 0, 0, 0.35F);
    const QString difference =
        shadowDifference(Drawing{window.get()}, QRectF{place, menu->size()}, {black, 12, {0, 4}});
    QVERIFY2(difference.isEmpty(), qPrintable(difference));

    const QPoint below = place + QPoint{menu->width() / 2, menu->height() + 4};
    const QColor ground = themeColor(ColorRole::windowBackground);
    const auto shown = [&] {
        return window->grab().toImage().pixelColor(below);
    };
    QVERIFY(shown().lightness() < ground.lightness() - 5);
    menu->close();
    QCOMPARE(shown(), ground);
}

void MenuStyleTest::theShadowTakesNoClicks()
{
    constexpr QPoint place{100, 80};
    const QPoint beside = place - QPoint{3, 3};
    QWidget field{window.get()};
    field.setGeometry(50, 50, 100, 100);
    field.show();
    open(place);
    QCOMPARE(window->childAt(beside), &field);
    QTest::mousePress(menu.get(), Qt::LeftButton, {}, beside - place);
    QVERIFY(!menu->isVisible());
}

/// Run on an X server with and without a compositor as well.
void MenuStyleTest::theCornersShowWhatIsBehind()
{
    open({50, 50});
    const bool isBlended = !qEnvironmentVariableIsSet("QUILMORA_TEST_WITHOUT_COMPOSITOR");
    QCOMPARE(menu->testAttribute(Qt::WA_TranslucentBackground), isBlended);
    // A mask keeps the resolution of the screen on which it was set.
    QVERIFY(menu->mask().isEmpty());
    if (QGuiApplication::platformName() != u"xcb"_s) {
        QCOMPARE(colorAt({0.25, 0.25}).alpha(), 0);
        return;
    }
    const auto shown = [this](QPoint place) {
        const QPoint there = menu->mapToGlobal(place);
        return menu->screen()->grabWindow(0, there.x(), there.y(), 1, 1).toImage().pixelColor(0, 0);
    };
    const QColor ground = themeColor(ColorRole::menuBackground);
    QTRY_COMPARE(shown({menu->width() / 2, 3}), ground);
    const QImage behind = window->grab().toImage();
    const auto expected = [&](QPoint corner) {
        return isBlended ? behind.pixelColor(window->mapFromGlobal(menu->mapToGlobal(corner)))
                         : over(themeColor(ColorRole::controlBorder), ground);
    };
    const int right = menu->width() - 1;
    const int bottom = menu->height() - 1;
    for (const QPoint corner : {QPoint{0, 0}, QPoint{right, 0}, QPoint{0, bottom}, QPoint{right, bottom}}) {
        // A compositor may blend the menu only after it was drawn.
        QTRY_VERIFY2(screenCapture::isClose(shown(corner), expected(corner), 3),
                     qPrintable(screenCapture::text(shown(corner))));
    }
}

void MenuStyleTest::thePaddingIsEvenAroundTheCommands()
{
    open();
    const QRect inside = menu->rect().adjusted(padding, padding, -padding, -padding);
    const QRect first = menu->actionGeometry(undo);
    QCOMPARE(first.topLeft(), inside.topLeft());
    QCOMPARE(first.right(), inside.right());
    QCOMPARE(first.height(), 22);
    QCOMPARE(menu->actionGeometry(redo).top(), first.bottom() + 1);
    QCOMPARE(menu->actionGeometry(erase).bottomRight(), inside.bottomRight());
}

void MenuStyleTest::separatorsAreInsetHairlines()
{
    open();
    const QRect place = menu->actionGeometry(line);
    QCOMPARE(place.height(), 11);
    const QColor ground = themeColor(ColorRole::menuBackground);
    const QColor color = over(themeColor(ColorRole::separator), ground);
    const double top = place.top() + 5;
    const double left = padding + textInset;
    for (const double x : {left + 0.25, menu->width() - left - 0.25}) {
        QVERIFY(screenCapture::isClose(colorAt({x, top + 0.25}), color));
        QVERIFY(screenCapture::isClose(colorAt({x, top + 0.75}), color));
        QVERIFY(screenCapture::isClose(colorAt({x, top - 0.25}), ground));
        QVERIFY(screenCapture::isClose(colorAt({x, top + 1.25}), ground));
    }
    QVERIFY(screenCapture::isClose(colorAt({left - 0.25, top + 0.5}), ground));
    QVERIFY(screenCapture::isClose(colorAt({menu->width() - left + 0.25, top + 0.5}), ground));
}

void MenuStyleTest::theHighlightIsARoundAccent()
{
    open();
    menu->setActiveAction(undo);
    const QRectF place = menu->actionGeometry(undo);
    const QColor ground = themeColor(ColorRole::menuBackground);
    const QColor accent = themeColor(ColorRole::accent);
    const double middle = place.center().y();
    QVERIFY(screenCapture::isClose(colorAt({padding + 0.25, middle}), accent));
    QVERIFY(screenCapture::isClose(colorAt({padding - 0.25, middle}), ground));
    QVERIFY(screenCapture::isClose(colorAt({place.right() - 0.25, middle}), accent));
    QVERIFY(screenCapture::isClose(colorAt({place.right() + 0.25, middle}), ground));
    QVERIFY(screenCapture::isClose(colorAt({place.center().x(), place.top() + 0.25}), accent));
    QVERIFY(screenCapture::isClose(colorAt({place.center().x(), place.top() - 0.25}), ground));
    QVERIFY(screenCapture::isClose(colorAt({place.center().x(), place.bottom() - 0.25}), accent));
    QVERIFY(!screenCapture::isClose(colorAt(place.topLeft() + QPointF{0.25, 0.25}), accent, 40));

    const Drawing drawing{menu.get()};
    const QColor onAccent = themeColor(ColorRole::onAccent);
    for (const QString &text : {u"撤销"_s, u"Ctrl+Z"_s}) {
        QCOMPARE(drawing.lookOf(text), Drawing::look(13, QFont::Normal, onAccent));
    }
}

void MenuStyleTest::theHighlightHasItsRadius()
{
    open();
    menu->setActiveAction(undo);
    // A circle of radius 4 crosses its diagonal 1.17 from the tip.
    const QPointF tip = menu->actionGeometry(undo).topLeft();
    const QColor ground = themeColor(ColorRole::menuBackground);
    QVERIFY(screenCapture::isClose(colorAt(tip + QPointF{1.03, 1.03}, 16), ground));
    QVERIFY(screenCapture::isClose(colorAt(tip + QPointF{1.35, 1.35}, 16), themeColor(ColorRole::accent)));
}

void MenuStyleTest::theTextsAreInTheMiddleOfTheHighlight()
{
    QFETCH_GLOBAL(const double, devicePixelRatio);
    menu->clear();
    QAction *command = menu->addAction(u"国国"_s);
    open();
    menu->setActiveAction(command);
    const QRect place = menu->actionGeometry(command);
    const QImage seen = picture();
    const auto isInk = [&](int y) {
        for (int x = 0; x < seen.width(); ++x) {
            if (screenCapture::isClose(seen.pixelColor(x, y), themeColor(ColorRole::onAccent), 80)) {
                return true;
            }
        }
        return false;
    };
    const int top = qRound((place.top() + 1) * devicePixelRatio);
    const int bottom = qRound(place.bottom() * devicePixelRatio) - 1;
    int first = top;
    int last = bottom;
    while (first < last && !isInk(first)) {
        ++first;
    }
    while (first < last && !isInk(last)) {
        --last;
    }
    QVERIFY(last > first);
    QVERIFY2(std::abs((first - top) - (bottom - last)) <= 1,
             qPrintable(u"%1 above, %2 below"_s.arg(first - top).arg(bottom - last)));
}

void MenuStyleTest::disabledCommandsAreNeverHighlighted()
{
    open();
    const QImage before = picture();
    menu->setActiveAction(redo);
    QCOMPARE(picture(), before);
    menu->setActiveAction(undo);
    QVERIFY(picture() != before);
    // Nor do the arrow keys stop there.
    QTest::keyClick(menu.get(), Qt::Key_Down);
    QCOMPARE(menu->activeAction(), erase);

    // Not even where a menu asks for it.
    QStyleOptionMenuItem option;
    option.initFrom(menu.get());
    option.menuItemType = QStyleOptionMenuItem::Normal;
    option.rect = {0, 0, 100, 22};
    const auto accentIn = [&](QStyle::State state) {
        option.state = state;
        QImage seen{option.rect.size(), QImage::Format_ARGB32_Premultiplied};
        seen.fill(Qt::transparent);
        QPainter painter{&seen};
        menu->style()->drawControl(QStyle::CE_MenuItem, &option, &painter, menu.get());
        return screenCapture::countOf(seen, themeColor(ColorRole::accent));
    };
    QCOMPARE(accentIn(QStyle::State_Selected), 0);
    QVERIFY(accentIn(QStyle::State_Selected | QStyle::State_Enabled) > 2000);
}

void MenuStyleTest::theTextsHaveTheirFontAndColours()
{
    open();
    const Drawing drawing{menu.get()};
    const auto look = [](ColorRole role) {
        return Drawing::look(13, QFont::Normal, themeColor(role));
    };
    QCOMPARE(drawing.lookOf(u"撤销"_s), look(ColorRole::primaryText));
    QCOMPARE(drawing.lookOf(u"Ctrl+Z"_s), look(ColorRole::secondaryText));
    QCOMPARE(drawing.lookOf(u"重做"_s), look(ColorRole::tertiaryText));
    QCOMPARE(drawing.lookOf(u"Ctrl+Shift+Z"_s), look(ColorRole::tertiaryText));
    for (const DrawnText &text : drawing.texts()) {
        QVERIFY(!text.font.underline());
        QCOMPARE(text.font.families(), QApplication::font().families());
    }
}

void MenuStyleTest::theTextsAreInset()
{
    open();
    const Drawing drawing{menu.get()};
    const double left = padding + textInset;
    QCOMPARE(drawing.placeOf(u"撤销"_s).left(), left);
    QCOMPARE(drawing.placeOf(u"删除"_s).left(), left);
    QVERIFY(qAbs(drawing.placeOf(u"Ctrl+Z"_s).right() - (menu->width() - left)) <= 1);
    QVERIFY(qAbs(drawing.placeOf(u"Ctrl+Shift+Z"_s).right() - (menu->width() - left)) <= 1);
    const double gap = drawing.placeOf(u"Ctrl+Shift+Z"_s).left() - drawing.placeOf(u"重做"_s).right();
    QVERIFY2(qAbs(gap - 24) <= 1, qPrintable(QString::number(gap)));
}

void MenuStyleTest::lettersForTheKeyboardAreNotShown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("added") << u"撤销(&U)\tCtrl+Z"_s << u"撤销"_s;
    QTest::newRow("added after a blank") << u"撤销 (&U)"_s << u"撤销"_s;
    QTest::newRow("added before dots") << u"打开(&O)..."_s << u"打开..."_s;
    QTest::newRow("marked") << u"&Undo"_s << u"Undo"_s;
    QTest::newRow("marked inside") << u"Select &All"_s << u"Select All"_s;
    QTest::newRow("the character itself") << u"A && B"_s << u"A & B"_s;
    QTest::newRow("brackets of the text") << u"大小(U)"_s << u"大小(U)"_s;
}

void MenuStyleTest::lettersForTheKeyboardAreNotShown()
{
    QFETCH(const QString, text);
    QFETCH(const QString, shown);
    menu->clear();
    const QAction *command = menu->addAction(text);
    open();
    QCOMPARE(Drawing{menu.get()}.texts().constFirst().text, shown);
    QCOMPARE(command->text(), text);

    QMenu plain{window.get()};
    const QString key = text.section(u'\t', 1);
    plain.addAction(QString{shown}.replace(u'&', u"&&"_s) + (key.isEmpty() ? key : u'\t' + key));
    QCOMPARE(menu->sizeHint(), plain.sizeHint());
    const int bare = QFontMetrics{menu->font()}.horizontalAdvance(shown) + 2 * (padding + textInset);
    QVERIFY(key.isEmpty() ? menu->width() == bare : menu->width() > bare);
}

void MenuStyleTest::thereIsNoRoomForIcons()
{
    open();
    const QSize size = menu->sizeHint();
    const QImage before = picture();
    QPixmap icon{16, 16};
    icon.fill(Qt::red);
    undo->setIcon(icon);
    QCOMPARE(menu->sizeHint(), size);
    QCOMPARE(picture(), before);
}

void MenuStyleTest::checkMarksAndArrowsHaveRoomWhereTheyAre()
{
    const int usualWidth = menu->sizeHint().width();
    erase->setCheckable(true);
    QCOMPARE(menu->sizeHint().width(), usualWidth + 16);
    open();
    QCOMPARE(Drawing{menu.get()}.placeOf(u"撤销"_s).left(), padding + textInset + 16.0);
    const auto inkIn = [this](const QRect &area) {
        const QImage seen = picture(2);
        const QRect pixels{area.topLeft() * 2, area.size() * 2};
        return pixels.width() * pixels.height() -
               screenCapture::countOf(seen, themeColor(ColorRole::menuBackground), pixels);
    };
    const QRect place = menu->actionGeometry(erase);
    const QRect mark{place.left() + textInset, place.top(), 14, place.height()};
    QCOMPARE(inkIn(mark), 0);
    erase->setChecked(true);
    QVERIFY(inkIn(mark) > 20);

    const QRect arrow{place.right() - textInset - 8, place.top(), 9, place.height()};
    QCOMPARE(inkIn(arrow), 0);
    QMenu further;
    erase->setMenu(&further);
    QVERIFY(inkIn(arrow) > 20);
    erase->setMenu(nullptr);
}

int main(int argc, char **argv)
{
    return runScreenTest<MenuStyleTest>(argc, argv);
}

#include "MenuStyleTest.moc"
