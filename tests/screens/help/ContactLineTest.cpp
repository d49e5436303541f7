#include "screens/help/ContactLine.h"

#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Theme.h"

#include <QLineEdit>
#include <QSignalSpy>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// How many pixels the text inks.
int ink(ContactLine *line, QSize size)
{
    line->resize(size);
    const QImage shown = screenCapture::capture(line, 2.0);
    return shown.width() * shown.height() - screenCapture::countOf(shown, Qt::transparent, {}, 60);
}

} // namespace

class ContactLineTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { fill(u"服务帮助：https://quilmora.example/help"_s); }

    void aClickAnywhereInItsRectangleActs()
    {
        const QSignalSpy clicks{m_line, &ContactLine::clicked};
        const QRect inside = m_line->rect();
        int count = 0;
        for (const QPoint place : {inside.topLeft(), inside.topRight(), inside.bottomLeft(),
                                   inside.bottomRight(), inside.center()}) {
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                              m_line->mapTo(m_window.get(), place));
            QCOMPARE(clicks.size(), ++count);
        }
        for (const QPoint place : {inside.topLeft() - QPoint{0, 1}, inside.bottomRight() + QPoint{1, 0}}) {
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                              m_line->mapTo(m_window.get(), place));
            QCOMPARE(clicks.size(), count);
        }
    }

    void itIsPressedBy_data()
    {
        using Press = std::function<void(ContactLine *)>;
        QTest::addColumn<Press>("press");
        QTest::addColumn<int>("count");
        const auto key = [](Qt::Key code) {
            return Press{[code](ContactLine *line) {
                line->setFocus(Qt::TabFocusReason);
                QTest::keyClick(line, code);
            }};
        };
        const auto mouse = [](Qt::MouseButton button) {
            return Press{[button](ContactLine *line) {
                QTest::mouseClick(line, button);
            }};
        };
        QTest::newRow("right button") << mouse(Qt::RightButton) << 0;
        QTest::newRow("middle button") << mouse(Qt::MiddleButton) << 0;
        QTest::newRow("space") << key(Qt::Key_Space) << 1;
        QTest::newRow("return") << key(Qt::Key_Return) << 1;
        QTest::newRow("enter") << key(Qt::Key_Enter) << 1;
        QTest::newRow("a key that repeats") << Press{[](ContactLine *line) {
            for (const bool again : {false, true, true}) {
                QKeyEvent press{QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, again};
                QApplication::sendEvent(line, &press);
            }
        }} << 1;
        QTest::newRow("screen reader") << Press{[](ContactLine *line) {
            accessible::interfaceOf(line)->actionInterface()->doAction(
                QAccessibleActionInterface::pressAction());
        }} << 1;
    }

    void itIsPressedBy()
    {
        QFETCH(const std::function<void(ContactLine *)>, press);
        QFETCH(const int, count);
        const QSignalSpy clicks{m_line, &ContactLine::clicked};
        press(m_line);
        QTRY_COMPARE(clicks.size(), count);
    }

    void itIsAButtonNamedByItsText()
    {
        const QAccessibleInterface *interface = accessible::interfaceOf(m_line);
        QCOMPARE(interface->role(), QAccessible::Button);
        QCOMPARE(interface->text(QAccessible::Name), u"服务帮助：https://quilmora.example/help"_s);
        QVERIFY(interface->state().focusable);
        QCOMPARE(m_line->cursor().shape(), Qt::PointingHandCursor);
        click(m_line);
        QVERIFY(!m_line->hasFocus());
        QVERIFY(!m_line->showsFocus());
    }

    void itsFocusShowsWhenTheKeyboardGaveIt()
    {
        const QSignalSpy changes{m_line, &ContactLine::focusChanged};
        // As when the window becomes active with nothing else to focus.
        m_line->setFocus(Qt::ActiveWindowFocusReason);
        QVERIFY(!m_line->showsFocus());
        m_window->setFocus();
        m_line->setFocus(Qt::TabFocusReason);
        QVERIFY(m_line->showsFocus());
        const auto before = changes.size();
        m_line->clearFocus();
        QVERIFY(!m_line->showsFocus());
        QCOMPARE(changes.size(), before + 1);
        m_line->setFocus(Qt::ActiveWindowFocusReason);
        QVERIFY(!m_line->showsFocus());
    }

    void anAmpersandInAnAddressIsNoKey()
    {
        fill(u"https://quilmora.example/?a=1&b=2&&<i>c</i>"_s);
        QCOMPARE(accessible::interfaceOf(m_line)->text(QAccessible::Name),
                 u"https://quilmora.example/?a=1&b=2&&<i>c</i>"_s);
        const QSignalSpy clicks{m_line, &ContactLine::clicked};
        QTest::keyClick(m_window.get(), Qt::Key_B, Qt::AltModifier);
        QCOMPARE(clicks.size(), 0);
    }

    void itIsAsLargeAsItsText()
    {
        fill(u"R&D <b>https://quilmora.example</b>"_s);
        QFont font = QApplication::font();
        font.setPixelSize(13);
        font.setWeight(QFont::Normal);
        const double expected =
            QFontMetricsF{font}.horizontalAdvance(u"R&D <b>https://quilmora.example</b>"_s);
        QVERIFY2(std::abs(m_line->width() - expected) <= 1.5, qPrintable(QString::number(expected)));
        QVERIFY(std::abs(m_line->height() - QFontMetricsF{font}.height()) <= 1.5);
        const QImage shown = screenCapture::capture(m_line, 3.0);
        QColor ink = themeColor(ColorRole::primaryText);
        QVERIFY2(screenCapture::countOf(shown, QColor::fromRgba(ink.rgba()), {}, 4) > 50,
                 "in the primary color");
    }

    void aLongTextIsBrokenAndLosesNothing_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("an address without a place to break")
            << u"https://quilmora.example/"_s + QString{175, u'a'};
        QTest::newRow("an address with many")
            << u"https://quilmora.example/"_s + u"help-and-more/"_s.repeated(12);
        QTest::newRow("words") << u"several words "_s.repeated(14);
        QTest::newRow("Chinese") << u"帮助中心"_s.repeated(50);
    }

    void aLongTextIsBrokenAndLosesNothing()
    {
        QFETCH(const QString, value);
        fill(u"服务帮助："_s + value + u"（仅技术支持与使用说明）"_s);
        const QSize oneLine = m_line->sizeHint();
        QCOMPARE(m_line->heightForWidth(oneLine.width()), oneLine.height());
        const int height = m_line->heightForWidth(500);
        QVERIFY(height > oneLine.height());
        QCOMPARE(height % oneLine.height(), 0);
        const int whole = ink(m_line, oneLine);
        QVERIFY(whole > 1000);
        const int broken = ink(m_line, {500, height});
        QVERIFY2(std::abs(broken - whole) * 50 < whole,
                 qPrintable(u"%1 pixels of ink on one line, %2 on several"_s.arg(whole).arg(broken)));
    }

private:
    void fill(const QString &text)
    {
        m_window = std::make_unique<QWidget>();
        auto *first = new QLineEdit{m_window.get()};
        first->move(0, 200);
        first->setFocus();
        m_line = new ContactLine{text, m_window.get()};
        m_line->move(20, 20);
        m_line->resize(m_line->sizeHint());
        showWindow(*m_window, {600, 300});
    }

    std::unique_ptr<QWidget> m_window;
    ContactLine *m_line = nullptr;
};

QUILMORA_TEST(ContactLineTest, runScreenTest)

#include "ContactLineTest.moc"
