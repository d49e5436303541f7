#include "screens/help/ContactLine.h"

#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QLineEdit>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class ContactLineTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aClickAnywhereInItsRectangleActs();
    void onlyTheLeftButtonActs();
    void spaceReturnAndEnterAct_data();
    void spaceReturnAndEnterAct();
    void aKeyThatIsHeldDownActsOnce();
    void screenReadersFindAButtonNamedByItsText();
    void aScreenReaderCanPressIt();
    void thePointerIsAHand();
    void aClickGivesItNoFocus();
    void itsFocusShowsWhenTheKeyboardGaveIt();
    void anAmpersandInAnAddressIsNoKey();
    void itIsAsLargeAsItsText();
    void aLongTextIsBrokenAndLosesNothing_data();
    void aLongTextIsBrokenAndLosesNothing();

private:
    void fill(const QString &text);

    std::unique_ptr<QWidget> window;
    ContactLine *line = nullptr;
};

namespace
{

/// How many pixels the text inks.
int ink(ContactLine *line, QSize size)
{
    line->resize(size);
    const QImage shown = screenCapture::capture(line, 2.0);
    return shown.width() * shown.height() - screenCapture::countOf(shown, Qt::transparent, {}, 60);
}

} // namespace

void ContactLineTest::init()
{
    fill(u"服务帮助：https://quilmora.example/help"_s);
}

void ContactLineTest::fill(const QString &text)
{
    window = std::make_unique<QWidget>();
    auto *first = new QLineEdit{window.get()};
    first->move(0, 200);
    first->setFocus();
    line = new ContactLine{text, window.get()};
    line->move(20, 20);
    line->resize(line->sizeHint());
    showWindow(*window, {600, 300});
}

void ContactLineTest::aClickAnywhereInItsRectangleActs()
{
    const QSignalSpy clicks{line, &ContactLine::clicked};
    const QRect inside = line->rect();
    int count = 0;
    for (const QPoint place :
         {inside.topLeft(), inside.topRight(), inside.bottomLeft(), inside.bottomRight(), inside.center()}) {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, line->mapTo(window.get(), place));
        QCOMPARE(clicks.size(), ++count);
    }
    for (const QPoint place : {inside.topLeft() - QPoint{0, 1}, inside.bottomRight() + QPoint{1, 0}}) {
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, line->mapTo(window.get(), place));
        QCOMPARE(clicks.size(), count);
    }
}

void ContactLineTest::onlyTheLeftButtonActs()
{
    const QSignalSpy clicks{line, &ContactLine::clicked};
    QTest::mouseClick(line, Qt::RightButton);
    QTest::mouseClick(line, Qt::MiddleButton);
    QCOMPARE(clicks.size(), 0);
}

void ContactLineTest::spaceReturnAndEnterAct_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

void ContactLineTest::spaceReturnAndEnterAct()
{
    QFETCH(const Qt::Key, key);
    const QSignalSpy clicks{line, &ContactLine::clicked};
    line->setFocus(Qt::TabFocusReason);
    QTest::keyClick(line, key);
    QCOMPARE(clicks.size(), 1);
}

void ContactLineTest::aKeyThatIsHeldDownActsOnce()
{
    const QSignalSpy clicks{line, &ContactLine::clicked};
    for (const bool again : {false, true, true}) {
        QKeyEvent press{QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, again};
        QApplication::sendEvent(line, &press);
    }
    QCOMPARE(clicks.size(), 1);
}

void ContactLineTest::screenReadersFindAButtonNamedByItsText()
{
    const QAccessibleInterface *interface = accessible::interfaceOf(line);
    QCOMPARE(interface->role(), QAccessible::Button);
    QCOMPARE(interface->text(QAccessible::Name), u"服务帮助：https://quilmora.example/help"_s);
    QVERIFY(interface->state().focusable);
}

void ContactLineTest::aScreenReaderCanPressIt()
{
    const QSignalSpy clicks{line, &ContactLine::clicked};
    accessible::interfaceOf(line)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(clicks.size(), 1);
}

void ContactLineTest::thePointerIsAHand()
{
    QCOMPARE(line->cursor().shape(), Qt::PointingHandCursor);
}

void ContactLineTest::aClickGivesItNoFocus()
{
    click(line);
    QVERIFY(!line->hasFocus());
    QVERIFY(!line->showsFocus());
}

void ContactLineTest::itsFocusShowsWhenTheKeyboardGaveIt()
{
    const QSignalSpy changes{line, &ContactLine::focusChanged};
    // As when the window becomes active with nothing else to focus.
    line->setFocus(Qt::ActiveWindowFocusReason);
    QVERIFY(!line->showsFocus());
    window->setFocus();
    line->setFocus(Qt::TabFocusReason);
    QVERIFY(line->showsFocus());
    const auto before = changes.size();
    line->clearFocus();
    QVERIFY(!line->showsFocus());
    QCOMPARE(changes.size(), before + 1);
    line->setFocus(Qt::ActiveWindowFocusReason);
    QVERIFY(!line->showsFocus());
}

void ContactLineTest::anAmpersandInAnAddressIsNoKey()
{
    fill(u"https://quilmora.example/?a=1&b=2&&<i>c</i>"_s);
    QCOMPARE(accessible::interfaceOf(line)->text(QAccessible::Name),
             u"https://quilmora.example/?a=1&b=2&&<i>c</i>"_s);
    const QSignalSpy clicks{line, &ContactLine::clicked};
    QTest::keyClick(window.get(), Qt::Key_B, Qt::AltModifier);
    QCOMPARE(clicks.size(), 0);
}

void ContactLineTest::itIsAsLargeAsItsText()
{
    fill(u"R&D <b>https://quilmora.example</b>"_s);
    QFont font = QApplication::font();
    font.setPixelSize(13);
    font.setWeight(QFont::Normal);
    const double expected = QFontMetricsF{font}.horizontalAdvance(u"R&D <b>https://quilmora.example</b>"_s);
    QVERIFY2(std::abs(line->width() - expected) <= 1.5, qPrintable(QString::number(expected)));
    QVERIFY(std::abs(line->height() - QFontMetricsF{font}.height()) <= 1.5);
    const QImage shown = screenCapture::capture(line, 3.0);
    QColor ink = themeColor(ColorRole::primaryText);
    QVERIFY2(screenCapture::countOf(shown, QColor::fromRgba(ink.rgba()), {}, 4) > 50,
             "in the primary colour");
}

void ContactLineTest::aLongTextIsBrokenAndLosesNothing_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("an address without a place to break")
        << u"https://quilmora.example/"_s + QString{175, u'a'};
    QTest::newRow("an address with many")
        << u"https://quilmora.example/"_s + u"help-and-more/"_s.repeated(12);
    QTest::newRow("words") << u"several words "_s.repeated(14);
    QTest::newRow("Chinese") << u"帮助中心"_s.repeated(50);
}

void ContactLineTest::aLongTextIsBrokenAndLosesNothing()
{
    QFETCH(const QString, value);
    fill(u"服务帮助："_s + value + u"（仅技术支持与使用说明）"_s);
    const QSize oneLine = line->sizeHint();
    QCOMPARE(line->heightForWidth(oneLine.width()), oneLine.height());
    const int height = line->heightForWidth(500);
    QVERIFY(height > oneLine.height());
    QCOMPARE(height % oneLine.height(), 0);
    const int whole = ink(line, oneLine);
    QVERIFY(whole > 1000);
    const int broken = ink(line, {500, height});
    QVERIFY2(std::abs(broken - whole) * 50 < whole,
             qPrintable(u"%1 pixels of ink on one line, %2 on several"_s.arg(whole).arg(broken)));
}

int main(int argc, char *argv[])
{
    return runScreenTest<ContactLineTest>(argc, argv);
}

#include "ContactLineTest.moc"
