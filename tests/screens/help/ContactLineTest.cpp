#include "screens/help/HelpView.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Theme.h"

#include <QLineEdit>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// How many pixels the text inks.
int ink(ContactLine *line, QSize size)
{
    line->resize(size);
    return screenCapture::countBeside(screenCapture::capture(line, 2.0), Qt::transparent, {}, 60);
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
        const auto clicksAfter = [&](QPoint place) {
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {},
                              m_line->mapTo(m_window.get(), place));
            return clicks.size();
        };
        const QRect inside = m_line->rect();
        int count = 0;
        for (const QPoint place : {inside.topLeft(), inside.topRight(), inside.bottomLeft(),
                                   inside.bottomRight(), inside.center()}) {
            QCOMPARE(clicksAfter(place), ++count);
        }
        QCOMPARE(clicksAfter(inside.topLeft() - QPoint{0, 1}), count);
        QCOMPARE(clicksAfter(inside.bottomRight() + QPoint{1, 0}), count);
    }

    void itIsPressedBy()
    {
        const QSignalSpy clicks{m_line, &ContactLine::clicked};
        QTest::mouseClick(m_line, Qt::RightButton);
        QTest::mouseClick(m_line, Qt::MiddleButton);
        QCOMPARE(clicks.size(), 0);
        m_line->setFocus(Qt::TabFocusReason);
        for (const auto key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            const qsizetype before = clicks.size();
            QTest::keyClick(m_line, key);
            QTRY_COMPARE(clicks.size(), before + 1);
        }
        // A key that repeats counts once.
        for (const bool again : {false, true, true}) {
            QKeyEvent press{QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, again};
            QApplication::sendEvent(m_line, &press);
        }
        QTRY_COMPARE(clicks.size(), 4);
        accessible::interfaceOf(m_line)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(clicks.size(), 5);
    }

    void itIsAButtonWhoseFocusShowsWhenTheKeyboardGaveIt()
    {
        const QAccessibleInterface *interface = accessible::interfaceOf(m_line);
        QCOMPARE(interface->role(), QAccessible::Button);
        QCOMPARE(interface->text(QAccessible::Name), u"服务帮助：https://quilmora.example/help"_s);
        QVERIFY(interface->state().focusable);
        QCOMPARE(m_line->cursor().shape(), Qt::PointingHandCursor);
        click(m_line);
        QVERIFY(!m_line->hasFocus());
        QVERIFY(!m_line->showsFocus());
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

    void itIsAsLargeAsItsTextAndNoPartOfItIsAKey()
    {
        const QString text = u"R&D &b <b>https://quilmora.example/?a=1&b=2&&</b>"_s;
        fill(text);
        QCOMPARE(accessible::interfaceOf(m_line)->text(QAccessible::Name), text);
        QFont font = QApplication::font();
        font.setPixelSize(13);
        font.setWeight(QFont::Normal);
        const double expected = QFontMetricsF{font}.horizontalAdvance(text);
        QVERIFY2(std::abs(m_line->width() - expected) <= 1.5, qPrintable(QString::number(expected)));
        QVERIFY(std::abs(m_line->height() - QFontMetricsF{font}.height()) <= 1.5);
        const QColor primary = QColor::fromRgba(themeColor(ColorRole::primaryText).rgba());
        QVERIFY(screenCapture::countOf(screenCapture::capture(m_line, 3.0), primary, {}, 4) > 50);
        const QSignalSpy clicks{m_line, &ContactLine::clicked};
        for (const auto key : {Qt::Key_D, Qt::Key_B}) {
            QTest::keyClick(m_window.get(), key, Qt::AltModifier);
            // A button that a key presses is down for a moment before it is clicked.
            QVERIFY(!m_line->isDown() && clicks.isEmpty());
        }
    }

    void aLongTextIsBrokenAndLosesNothing()
    {
        const QStringList values{
            u"https://quilmora.example/"_s + QString{175, u'a'},
            u"https://quilmora.example/"_s + u"help-and-more/"_s.repeated(12),
            u"several words "_s.repeated(14),
            u"帮助中心"_s.repeated(50),
        };
        for (const QString &value : values) {
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
