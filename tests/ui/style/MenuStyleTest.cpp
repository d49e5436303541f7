#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/ShadowProfile.h"
#include "ui/theme/Theme.h"

#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QStyleOption>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr int cornerRadius = 6;
constexpr int padding = 5;
constexpr int textInset = 9;

} // namespace

/// How menus are drawn, each test in both schemes and at one and two pixels for each point.
class MenuStyleTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<ColorScheme>("scheme");
        QTest::addColumn<double>("devicePixelRatio");
        for (const double ratio : {1.0, 2.0}) {
            QTest::addRow("light, %g", ratio) << ColorScheme::light << ratio;
            QTest::addRow("dark, %g", ratio) << ColorScheme::dark << ratio;
        }
    }

    void init()
    {
        QFETCH_GLOBAL(const ColorScheme, scheme);
        Theme::current().setScheme(scheme);
        m_window = std::make_unique<QWidget>();
        showWindow(*m_window, {600, 400});
        m_menu = std::make_unique<QMenu>(m_window.get());
        m_undo = m_menu->addAction(u"撤销(&U)\tCtrl+Z"_s);
        m_redo = m_menu->addAction(u"重做(&R)\tCtrl+Shift+Z"_s);
        m_redo->setEnabled(false);
        m_line = m_menu->addSeparator();
        m_erase = m_menu->addAction(u"删除"_s);
    }

    void cleanup()
    {
        m_menu.reset();
        m_window.reset();
        Theme::current().setScheme(ColorScheme::light);
    }

    void thePanelIsRoundWithAHairline()
    {
        open();
        const QString difference = CornerShape{m_menu.get()}.differenceFromCircle(cornerRadius);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
        const QColor ground = themeColor(ColorRole::menuBackground);
        const QPointF middle = QRectF{m_menu->rect()}.center();
        const QColor border = screenCapture::over(themeColor(ColorRole::controlBorder), ground);
        for (const double left : {0.25, 0.75}) {
            for (const QPointF place :
                 {QPointF{left, middle.y()}, QPointF{m_menu->width() - left, middle.y()},
                  QPointF{middle.x(), left}, QPointF{middle.x(), m_menu->height() - left}}) {
                QVERIFY(isColored(place, border));
            }
        }
        QVERIFY(isColored({1.25, middle.y()}, ground));
    }

    void theShadowLiesOnTheWindow()
    {
        constexpr QPoint place{100, 80};
        open(place);
        // The menu itself is no larger.
        QCOMPARE(m_menu->pos(), m_window->mapToGlobal(place));
        const QColor black = QColor::fromRgbF(0, 0, 0, 0.35F);
        const QString difference =
            shadowDifference(Drawing{m_window.get()}, QRectF{place, m_menu->size()}, {black, 12, {0, 4}});
        QVERIFY2(difference.isEmpty(), qPrintable(difference));

        const QPoint below = place + QPoint{m_menu->width() / 2, m_menu->height() + 4};
        const QColor ground = themeColor(ColorRole::windowBackground);
        const auto shown = [&] {
            return m_window->grab().toImage().pixelColor(below);
        };
        QVERIFY(shown().lightness() < ground.lightness() - 5);
        m_menu->close();
        QCOMPARE(shown(), ground);
    }

    void theShadowTakesNoClicks()
    {
        constexpr QPoint place{100, 80};
        const QPoint beside = place - QPoint{3, 3};
        QWidget field{m_window.get()};
        field.setGeometry(50, 50, 100, 100);
        field.show();
        open(place);
        QCOMPARE(m_window->childAt(beside), &field);
        QTest::mousePress(m_menu.get(), Qt::LeftButton, {}, beside - place);
        QVERIFY(!m_menu->isVisible());
    }

    /// Run on an X server with and without a compositor as well.
    void theCornersShowWhatIsBehind()
    {
        open({50, 50});
        const bool isBlended = !qEnvironmentVariableIsSet("QUILMORA_TEST_WITHOUT_COMPOSITOR");
        QCOMPARE(m_menu->testAttribute(Qt::WA_TranslucentBackground), isBlended);
        // A mask keeps the resolution of the screen on which it was set.
        QVERIFY(m_menu->mask().isEmpty());
        if (QGuiApplication::platformName() != u"xcb"_s) {
            QCOMPARE(colorAt({0.25, 0.25}).alpha(), 0);
            return;
        }
        const auto shown = [this](QPoint place) {
            const QPoint there = m_menu->mapToGlobal(place);
            return m_menu->screen()->grabWindow(0, there.x(), there.y(), 1, 1).toImage().pixelColor(0, 0);
        };
        const QColor ground = themeColor(ColorRole::menuBackground);
        QTRY_COMPARE(shown({m_menu->width() / 2, 3}), ground);
        const QImage behind = m_window->grab().toImage();
        const auto expected = [&](QPoint corner) {
            return isBlended ? behind.pixelColor(m_window->mapFromGlobal(m_menu->mapToGlobal(corner)))
                             : screenCapture::over(themeColor(ColorRole::controlBorder), ground);
        };
        const int right = m_menu->width() - 1;
        const int bottom = m_menu->height() - 1;
        for (const QPoint corner :
             {QPoint{0, 0}, QPoint{right, 0}, QPoint{0, bottom}, QPoint{right, bottom}}) {
            // A compositor may blend the menu only after it was drawn.
            QTRY_VERIFY2(screenCapture::isClose(shown(corner), expected(corner), 3),
                         qPrintable(screenCapture::text(shown(corner))));
        }
    }

    void thePaddingIsEvenAroundTheCommandsAndSeparatorsAreInset()
    {
        open();
        const QRect inside = m_menu->rect().adjusted(padding, padding, -padding, -padding);
        const QRect first = m_menu->actionGeometry(m_undo);
        QCOMPARE(first.topLeft(), inside.topLeft());
        QCOMPARE(first.right(), inside.right());
        QCOMPARE(first.height(), 22);
        QCOMPARE(m_menu->actionGeometry(m_redo).top(), first.bottom() + 1);
        QCOMPARE(m_menu->actionGeometry(m_erase).bottomRight(), inside.bottomRight());
        // Hairlines.
        const QRect place = m_menu->actionGeometry(m_line);
        QCOMPARE(place.height(), 11);
        const QColor ground = themeColor(ColorRole::menuBackground);
        const QColor color = screenCapture::over(themeColor(ColorRole::separator), ground);
        const double top = place.top() + 5;
        const double left = padding + textInset;
        const double right = m_menu->width() - left;
        for (const double x : {left + 0.25, right - 0.25}) {
            QVERIFY(isColored({x, top + 0.25}, color));
            QVERIFY(isColored({x, top + 0.75}, color));
            QVERIFY(isColored({x, top - 0.25}, ground));
            QVERIFY(isColored({x, top + 1.25}, ground));
        }
        QVERIFY(isColored({left - 0.25, top + 0.5}, ground));
        QVERIFY(isColored({right + 0.25, top + 0.5}, ground));
    }

    void theHighlightIsARoundAccent()
    {
        open();
        m_menu->setActiveAction(m_undo);
        const QRectF place = m_menu->actionGeometry(m_undo);
        const QColor ground = themeColor(ColorRole::menuBackground);
        const QColor accent = themeColor(ColorRole::accent);
        const QPointF middle = place.center();
        for (const double inwards : {0.25, -0.25}) {
            const QColor &expected = inwards > 0 ? accent : ground;
            QVERIFY(isColored({padding + inwards, middle.y()}, expected));
            QVERIFY(isColored({place.right() - inwards, middle.y()}, expected));
            QVERIFY(isColored({middle.x(), place.top() + inwards}, expected));
        }
        QVERIFY(isColored({middle.x(), place.bottom() - 0.25}, accent));
        QVERIFY(!screenCapture::isClose(colorAt(place.topLeft() + QPointF{0.25, 0.25}), accent, 40));
        // A circle of radius 4 crosses its diagonal 1.17 from the tip.
        QVERIFY(screenCapture::isClose(colorAt(place.topLeft() + QPointF{1.03, 1.03}, 16), ground));
        QVERIFY(screenCapture::isClose(colorAt(place.topLeft() + QPointF{1.35, 1.35}, 16), accent));

        const Drawing drawing{m_menu.get()};
        const QColor onAccent = themeColor(ColorRole::onAccent);
        for (const QString &text : {u"撤销"_s, u"Ctrl+Z"_s}) {
            QCOMPARE(drawing.lookOf(text), Drawing::look(13, QFont::Normal, onAccent));
        }
    }

    void theTextsAreInTheMiddleOfTheHighlight()
    {
        QFETCH_GLOBAL(const double, devicePixelRatio);
        m_menu->clear();
        QAction *command = m_menu->addAction(u"国国"_s);
        open();
        m_menu->setActiveAction(command);
        const QRect place = m_menu->actionGeometry(command);
        const QImage seen = picture();
        const QList<QPoint> rows = screenCapture::runs(seen.height(), [&](int y) {
            return screenCapture::countOf(seen, themeColor(ColorRole::onAccent), {0, y, seen.width(), 1},
                                          80) > 0;
        });
        QVERIFY(!rows.isEmpty());
        const int top = qRound((place.top() + 1) * devicePixelRatio);
        const int bottom = qRound(place.bottom() * devicePixelRatio) - 1;
        const int first = rows.constFirst().x();
        const int last = rows.constLast().x() + rows.constLast().y() - 1;
        QVERIFY2(std::abs((first - top) - (bottom - last)) <= 1,
                 qPrintable(u"%1 above, %2 below"_s.arg(first - top).arg(bottom - last)));
    }

    void disabledCommandsAreNeverHighlighted()
    {
        open();
        const QImage before = picture();
        m_menu->setActiveAction(m_redo);
        QCOMPARE(picture(), before);
        m_menu->setActiveAction(m_undo);
        QVERIFY(picture() != before);
        // Nor do the arrow keys stop there.
        QTest::keyClick(m_menu.get(), Qt::Key_Down);
        QCOMPARE(m_menu->activeAction(), m_erase);

        // Not even where a menu asks for it.
        QStyleOptionMenuItem option;
        option.initFrom(m_menu.get());
        option.menuItemType = QStyleOptionMenuItem::Normal;
        option.rect = {0, 0, 100, 22};
        const auto accentIn = [&](QStyle::State state) {
            option.state = state;
            QImage seen{option.rect.size(), QImage::Format_ARGB32_Premultiplied};
            seen.fill(Qt::transparent);
            QPainter painter{&seen};
            m_menu->style()->drawControl(QStyle::CE_MenuItem, &option, &painter, m_menu.get());
            return screenCapture::countOf(seen, themeColor(ColorRole::accent));
        };
        QCOMPARE(accentIn(QStyle::State_Selected), 0);
        QVERIFY(accentIn(QStyle::State_Selected | QStyle::State_Enabled) > 2000);
    }

    void theTextsHaveTheirFontColorAndInset()
    {
        open();
        const Drawing drawing{m_menu.get()};
        const QList<std::pair<QString, ColorRole>> roles{{u"撤销"_s, ColorRole::primaryText},
                                                         {u"Ctrl+Z"_s, ColorRole::secondaryText},
                                                         {u"重做"_s, ColorRole::tertiaryText},
                                                         {u"Ctrl+Shift+Z"_s, ColorRole::tertiaryText}};
        for (const auto &[text, role] : roles) {
            QCOMPARE(drawing.lookOf(text), Drawing::look(13, QFont::Normal, role));
        }
        for (const DrawnText &text : drawing.texts()) {
            QVERIFY(!text.font.underline());
            QCOMPARE(text.font.families(), QApplication::font().families());
        }
        const double left = padding + textInset;
        QCOMPARE(drawing.placeOf(u"撤销"_s).left(), left);
        QCOMPARE(drawing.placeOf(u"删除"_s).left(), left);
        QVERIFY(qAbs(drawing.placeOf(u"Ctrl+Z"_s).right() - (m_menu->width() - left)) <= 1);
        const QRectF longest = drawing.placeOf(u"Ctrl+Shift+Z"_s);
        QVERIFY(qAbs(longest.right() - (m_menu->width() - left)) <= 1);
        const double gap = longest.left() - drawing.placeOf(u"重做"_s).right();
        QVERIFY2(qAbs(gap - 24) <= 1, qPrintable(QString::number(gap)));
    }

    void lettersForTheKeyboardAreNotShown()
    {
        const QList<std::pair<QString, QString>> texts{
            {u"撤销(&U)\tCtrl+Z"_s, u"撤销"_s},  {u"撤销 (&U)"_s, u"撤销"_s},
            {u"打开(&O)..."_s, u"打开..."_s},    {u"&Undo"_s, u"Undo"_s},
            {u"Select &All"_s, u"Select All"_s}, {u"A && B"_s, u"A & B"_s},
            {u"大小(U)"_s, u"大小(U)"_s},
        };
        for (const auto &[text, shown] : texts) {
            m_menu->clear();
            const QAction *command = m_menu->addAction(text);
            open();
            QCOMPARE(Drawing{m_menu.get()}.texts().constFirst().text, shown);
            QCOMPARE(command->text(), text);

            QMenu plain{m_window.get()};
            const QString key = text.section(u'\t', 1);
            plain.addAction(QString{shown}.replace(u'&', u"&&"_s) + (key.isEmpty() ? key : u'\t' + key));
            QCOMPARE(m_menu->sizeHint(), plain.sizeHint());
            const int bare =
                QFontMetrics{m_menu->font()}.horizontalAdvance(shown) + 2 * (padding + textInset);
            QVERIFY2(key.isEmpty() ? m_menu->width() == bare : m_menu->width() > bare, qPrintable(text));
            m_menu->close();
        }
    }

    void iconsAreNotShownAndCheckMarksAndArrowsTakeTheirSpace()
    {
        open();
        const QSize size = m_menu->sizeHint();
        const QImage before = picture();
        QPixmap icon{16, 16};
        icon.fill(Qt::red);
        m_undo->setIcon(icon);
        QCOMPARE(m_menu->sizeHint(), size);
        QCOMPARE(picture(), before);
        m_menu->close();
        m_erase->setCheckable(true);
        QCOMPARE(m_menu->sizeHint().width(), size.width() + 16);
        open();
        QCOMPARE(Drawing{m_menu.get()}.placeOf(u"撤销"_s).left(), padding + textInset + 16.0);
        const auto inkIn = [this](const QRect &area) {
            return screenCapture::countBeside(picture(2), themeColor(ColorRole::menuBackground),
                                              {area.topLeft() * 2, area.size() * 2});
        };
        const QRect place = m_menu->actionGeometry(m_erase);
        const QRect mark{place.left() + textInset, place.top(), 14, place.height()};
        QCOMPARE(inkIn(mark), 0);
        m_erase->setChecked(true);
        QVERIFY(inkIn(mark) > 20);

        const QRect arrow{place.right() - textInset - 8, place.top(), 9, place.height()};
        QCOMPARE(inkIn(arrow), 0);
        QMenu further;
        m_erase->setMenu(&further);
        QVERIFY(inkIn(arrow) > 20);
        m_erase->setMenu(nullptr);
    }

private:
    QImage picture(double ratio = 0)
    {
        QFETCH_GLOBAL(const double, devicePixelRatio);
        return screenCapture::capture(m_menu.get(), ratio > 0 ? ratio : devicePixelRatio);
    }
    QColor colorAt(QPointF place, double ratio = 0) { return screenCapture::colorAt(picture(ratio), place); }
    bool isColored(QPointF place, const QColor &color)
    {
        return screenCapture::isClose(colorAt(place), color);
    }
    void open(QPoint place = {})
    {
        m_menu->popup(m_window->mapToGlobal(place));
        QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
    }

    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<QMenu> m_menu;
    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    QAction *m_line = nullptr;
    QAction *m_erase = nullptr;
};

QUILMORA_TEST(MenuStyleTest, runScreenTest)
#include "MenuStyleTest.moc"
