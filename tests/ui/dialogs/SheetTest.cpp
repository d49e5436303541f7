#include "ui/dialogs/Sheet.h"

#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Theme.h"

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

namespace {

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
        Sheet::paintBackground(*this, themeColor(ColorRole::windowBackground));
    }
};

} // namespace

/// A sheet over a window with a field and a button, which stand for what must not be reached meanwhile.
class SheetTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Theme::current().setScheme(ColorScheme::light);
        m_window = std::make_unique<QWidget>();
        m_field = new QLineEdit{m_window.get()};
        m_field->setGeometry(20, 20, 200, 30);
        m_below = new QPushButton{u"below"_s, m_window.get()};
        m_below->setGeometry(20, 400, 200, 30);
        showWindow(*m_window, {1000, 700});
        m_field->setFocus();
    }

    void cleanup() { m_window.reset(); }

    void theWindowIsDarkenedWithThePanelsShadow()
    {
        Sheet *sheet = open();
        // The edge is a hairline.
        const QImage edge = screenCapture::capture(panel(), 2.0);
        const auto edgeAt = [&edge](double y) {
            return screenCapture::colorAt(edge, {250, y});
        };
        QVERIFY(screenCapture::isClose(edgeAt(20), themeColor(ColorRole::windowBackground)));
        QVERIFY(edgeAt(0.25).lightness() < edgeAt(20).lightness() - 20);
        QVERIFY(screenCapture::isClose(edgeAt(1.25), edgeAt(20)));
        const QRect place = panel()->geometry();
        panel()->hide();
        for (const double ratio : {1.0, 2.0}) {
            const QImage picture = screenCapture::capture(sheet, ratio);
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
    }

    void itIsAModalDialogThatFollowsTheSizeOfTheWindow()
    {
        Sheet *sheet = open();
        QAccessibleInterface *dialog = accessible::interfaceOf(sheet);
        QCOMPARE(dialog->role(), QAccessible::Dialog);
        QVERIFY(dialog->state().modal);
        QCOMPARE(dialog->text(QAccessible::Name), u"title"_s);
        QCOMPARE(dialog->text(QAccessible::Description), u"message"_s);
        QVERIFY(!sheet->isWindow());
        QCOMPARE(sheet->parentWidget(), m_window.get());
        // A little above the middle, and no larger than the window.
        const QList<std::pair<QSize, QRect>> sizes{
            {{1000, 700}, {QPoint{350, 166}, panelSize}},
            {{1200, 250}, {QPoint{450, 25}, panelSize}},
            {{280, 180}, {0, 0, 280, 180}},
            {{1000, 700}, {QPoint{350, 166}, panelSize}},
        };
        for (const auto &[window, place] : sizes) {
            m_window->resize(window);
            QTRY_COMPARE(sheet->geometry(), QRect(QPoint(), window));
            QCOMPARE(panel()->geometry(), place);
        }
    }

    void clicksDoNotReachTheWindowUntilItGoes()
    {
        const QSignalSpy clicked{m_below, &QPushButton::clicked};
        const QPointer<Sheet> sheet = open();
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, m_below->geometry().center());
        QCOMPARE(clicked.size(), 0);
        sheet->close();
        QTRY_VERIFY(sheet.isNull());
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, m_below->geometry().center());
        QCOMPARE(clicked.size(), 1);
        // It goes with its owner.
        auto *owner = new QWidget{m_window.get()};
        const QPointer<Sheet> other = new Sheet{*new Panel, {}, {}, owner};
        delete owner;
        QVERIFY(other.isNull());
        open();
        m_window.reset();
    }

    void theKeyboardStaysOnTheSheetAfterAClickBesideThePanel()
    {
        const QPointer<Sheet> sheet = open();
        const QSignalSpy closed{sheet, &Sheet::closed};
        QCOMPARE(QApplication::focusWidget(), m_first);
        for (const QPoint place : {m_field->geometry().center(), QPoint{5, 690}}) {
            QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, place);
            QCOMPARE(QApplication::focusWidget(), m_first);
        }
        QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
        QCOMPARE(m_field->text(), QString{});
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
        QCOMPARE(closed.size(), 1);
        QTRY_VERIFY(sheet.isNull());
        QCOMPARE(QApplication::focusWidget(), m_field);
    }

    void theTabKeyStaysOnTheSheet()
    {
        open();
        for (int round = 0; round < 2; ++round) {
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), m_second);
            QTest::keyClick(m_window->windowHandle(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), m_first);
        }
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), m_second);
    }

    void onlyTheShortcutThatQuitsWorks()
    {
        const QShortcut quit{QKeySequence{u"Ctrl+Q"_s}, m_window.get()};
        const QShortcut close{QKeySequence{u"Ctrl+W"_s}, m_window.get()};
        const QSignalSpy quits{&quit, &QShortcut::activated};
        const QSignalSpy closes{&close, &QShortcut::activated};
        QTest::keySequence(m_window->windowHandle(), QKeySequence{u"Ctrl+W"_s});
        QCOMPARE(closes.size(), 1);
        const QPointer<Sheet> sheet = open();
        QTest::keySequence(m_window->windowHandle(), QKeySequence{u"Ctrl+W"_s});
        QCOMPARE(closes.size(), 1);
        QVERIFY(sheet->isVisible());
        QTest::keySequence(m_window->windowHandle(), QKeySequence{u"Ctrl+Q"_s});
        QCOMPARE(quits.size(), 1);
    }

private:
    Sheet *open()
    {
        auto *shown = new Panel;
        m_first = new QPushButton{u"first"_s, shown};
        m_second = new QPushButton{u"second"_s, shown};
        m_second->move(0, 60);
        shown->setFocusProxy(m_first);
        return new Sheet{*shown, u"title"_s, u"message"_s, m_window.get()};
    }

    QWidget *panel() { return m_first->parentWidget(); }

    std::unique_ptr<QWidget> m_window;
    QLineEdit *m_field = nullptr;
    QPushButton *m_below = nullptr;
    QPushButton *m_first = nullptr;
    QPushButton *m_second = nullptr;
};

QUILMORA_TEST(SheetTest, runScreenTest)
#include "SheetTest.moc"
