#include "screens/common/Sheet.h"

#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>

#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// A sheet over a window with a field and a button, which stand for what must not be reached meanwhile.
class SheetTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theWindowIsDarkenedWithThePanelsShadow_data();
    void theWindowIsDarkenedWithThePanelsShadow();
    void theEdgeIsAHairline();
    void itLiesInsideTheWindow();
    void thePanelFollowsTheSizeOfTheWindow();
    void clicksDoNotReachTheWindow();
    void theKeyboardStaysOnTheSheetAfterAClickBesideThePanel();
    void theTabKeyStaysOnTheSheet();
    void escapeClosesItAndTheFocusReturns();
    void onlyTheShortcutThatQuitsWorks();
    void itGoesWithItsOwner();
    void screenReadersKnowAModalDialog();

private:
    Sheet *open();
    QWidget *panel() { return first->parentWidget(); }

    std::unique_ptr<QWidget> window;
    QLineEdit *field = nullptr;
    QPushButton *below = nullptr;
    QPushButton *first = nullptr;
    QPushButton *second = nullptr;
};

namespace
{

constexpr QSize panelSize{300, 200};

class Panel final : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    QSize sizeHint() const override { return panelSize; }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        Sheet::paintGround(*this, themeColor(ColorRole::windowBackground));
    }
};

} // namespace

void SheetTest::init()
{
    Theme::current().setScheme(ColorScheme::light);
    window = std::make_unique<QWidget>();
    field = new QLineEdit{window.get()};
    field->setGeometry(20, 20, 200, 30);
    below = new QPushButton{u"below"_s, window.get()};
    below->setGeometry(20, 400, 200, 30);
    showWindow(*window, {1000, 700});
    field->setFocus();
}

Sheet *SheetTest::open()
{
    auto *shown = new Panel;
    first = new QPushButton{u"first"_s, shown};
    second = new QPushButton{u"second"_s, shown};
    second->move(0, 60);
    shown->setFocusProxy(first);
    return new Sheet{*shown, u"title"_s, u"message"_s, window.get()};
}

void SheetTest::theWindowIsDarkenedWithThePanelsShadow_data()
{
    QTest::addColumn<double>("devicePixelRatio");
    QTest::newRow("one pixel for each point") << 1.0;
    QTest::newRow("two") << 2.0;
}

void SheetTest::theWindowIsDarkenedWithThePanelsShadow()
{
    QFETCH(const double, devicePixelRatio);
    Sheet *sheet = open();
    const QRect place = panel()->geometry();
    panel()->hide();
    const QImage picture = screenCapture::capture(sheet, devicePixelRatio);
    const auto darkness = [&picture](QPoint at) {
        return screenCapture::colorAt(picture, at).alpha();
    };
    const int scrim = themeColor(ColorRole::scrim).alpha();
    QVERIFY(std::abs(darkness({5, 5}) - scrim) <= 1);
    const QPoint under{place.center().x(), place.bottom() + 1};
    const QPoint above{place.center().x(), place.top() - 1};
    // Darkest below, as of a light from above, and gone where the blur ends.
    QVERIFY(darkness(under + QPoint(0, 2)) > darkness(above - QPoint(0, 2)));
    QVERIFY(darkness(above - QPoint(0, 2)) > scrim + 5);
    QVERIFY(darkness(under + QPoint(0, 20)) < darkness(under + QPoint(0, 2)));
    QVERIFY(std::abs(darkness(under + QPoint(0, 50)) - scrim) <= 1);
}

void SheetTest::theEdgeIsAHairline()
{
    open();
    const QImage picture = screenCapture::capture(panel(), 2.0);
    const auto at = [&picture](double y) {
        return screenCapture::colorAt(picture, {250, y});
    };
    QVERIFY(screenCapture::isClose(at(20), themeColor(ColorRole::windowBackground)));
    QVERIFY(at(0.25).lightness() < at(20).lightness() - 20);
    QVERIFY(screenCapture::isClose(at(1.25), at(20)));
}

void SheetTest::itLiesInsideTheWindow()
{
    const Sheet *sheet = open();
    QVERIFY(!sheet->isWindow());
    QCOMPARE(sheet->parentWidget(), window.get());
    QCOMPARE(sheet->geometry(), window->rect());
    QCOMPARE(panel()->size(), panelSize);
    QCOMPARE(panel()->x(), (1000 - panelSize.width()) / 2);
    // A little above the middle.
    QCOMPARE(panel()->y(), (700 - panelSize.height()) / 3);
}

void SheetTest::thePanelFollowsTheSizeOfTheWindow()
{
    const Sheet *sheet = open();
    window->resize(1200, 250);
    QTRY_COMPARE(sheet->size(), QSize(1200, 250));
    QCOMPARE(panel()->geometry(), QRect(QPoint(450, 25), panelSize));
    window->resize(280, 180);
    QTRY_COMPARE(sheet->size(), QSize(280, 180));
    QCOMPARE(panel()->geometry(), QRect(0, 0, 280, 180));
    window->resize(1000, 700);
    QTRY_COMPARE(panel()->size(), panelSize);
}

void SheetTest::clicksDoNotReachTheWindow()
{
    const QSignalSpy clicked{below, &QPushButton::clicked};
    const QPointer<Sheet> sheet = open();
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, below->geometry().center());
    QCOMPARE(clicked.size(), 0);
    sheet->close();
    QTRY_VERIFY(sheet.isNull());
    QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, below->geometry().center());
    QCOMPARE(clicked.size(), 1);
}

void SheetTest::theKeyboardStaysOnTheSheetAfterAClickBesideThePanel()
{
    const QPointer<Sheet> sheet = open();
    QCOMPARE(QApplication::focusWidget(), first);
    for (const QPoint place : {field->geometry().center(), QPoint{5, 690}}) {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, place);
        QCOMPARE(QApplication::focusWidget(), first);
    }
    QTest::keyClick(window->windowHandle(), Qt::Key_X);
    QCOMPARE(field->text(), QString{});
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QTRY_VERIFY(sheet.isNull());
}

void SheetTest::theTabKeyStaysOnTheSheet()
{
    open();
    for (int round = 0; round < 2; ++round) {
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), second);
        QTest::keyClick(window->windowHandle(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), first);
    }
    QTest::keyClick(window->windowHandle(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), second);
}

void SheetTest::escapeClosesItAndTheFocusReturns()
{
    const QPointer<Sheet> sheet = open();
    const QSignalSpy closed{sheet, &Sheet::closed};
    QTest::keyClick(window->windowHandle(), Qt::Key_Escape);
    QCOMPARE(closed.size(), 1);
    QTRY_VERIFY(sheet.isNull());
    QCOMPARE(QApplication::focusWidget(), field);
}

void SheetTest::onlyTheShortcutThatQuitsWorks()
{
    const QShortcut quit{QKeySequence{u"Ctrl+Q"_s}, window.get()};
    const QShortcut close{QKeySequence{u"Ctrl+W"_s}, window.get()};
    const QSignalSpy quits{&quit, &QShortcut::activated};
    const QSignalSpy closes{&close, &QShortcut::activated};
    QTest::keySequence(window->windowHandle(), QKeySequence{u"Ctrl+W"_s});
    QCOMPARE(closes.size(), 1);
    const QPointer<Sheet> sheet = open();
    QTest::keySequence(window->windowHandle(), QKeySequence{u"Ctrl+W"_s});
    QCOMPARE(closes.size(), 1);
    QVERIFY(sheet->isVisible());
    QTest::keySequence(window->windowHandle(), QKeySequence{u"Ctrl+Q"_s});
    QCOMPARE(quits.size(), 1);
}

void SheetTest::itGoesWithItsOwner()
{
    auto *owner = new QWidget{window.get()};
    const QPointer<Sheet> sheet = new Sheet{*new Panel, {}, {}, owner};
    delete owner;
    QVERIFY(sheet.isNull());
    open();
    window.reset();
}

void SheetTest::screenReadersKnowAModalDialog()
{
    QAccessibleInterface *sheet = accessible::interfaceOf(open());
    QCOMPARE(sheet->role(), QAccessible::Dialog);
    QVERIFY(sheet->state().modal);
    QCOMPARE(sheet->text(QAccessible::Name), u"title"_s);
    QCOMPARE(sheet->text(QAccessible::Description), u"message"_s);
}

int main(int argc, char *argv[])
{
    return runScreenTest<SheetTest>(argc, argv);
}

#include "SheetTest.moc"
