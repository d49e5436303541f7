#include "ApplicationTest.h"
#include "support/ScreenCapture.h"
#include "ui/style/ControlStyle.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/TextLabel.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QFile>
#include <QProxyStyle>
#include <QStyleHints>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Counts what an idle window must not do.
class BusyEvents final : public QObject
{
public:
    BusyEvents() { QCoreApplication::instance()->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Timer || event->type() == QEvent::Paint ||
            event->type() == QEvent::UpdateRequest || event->type() == QEvent::MetaCall) {
            seen.append(QString::fromLatin1(watched->metaObject()->className()) + u' ' +
                        QString::number(event->type()));
        }
        return false;
    }
    QStringList seen;
};

/// Lets the event loop run until nothing has come for a while; gives up after some seconds.
void settle()
{
    BusyEvents events;
    QElapsedTimer quiet;
    quiet.start();
    const QDeadlineTimer end{5000};
    while (!quiet.hasExpired(200) && !end.hasExpired()) {
        events.seen.clear();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        if (!events.seen.isEmpty()) {
            quiet.restart();
        }
    }
}

/// The names of the objects below `root` that have a timer running.
QStringList timerOwners(QObject *root)
{
    QStringList owners;
    QObjectList objects = root->findChildren<QObject *>();
    objects.append(root);
    for (QObject *object : objects) {
        if (!QAbstractEventDispatcher::instance()->registeredTimers(object).isEmpty()) {
            owners.append(QString::fromLatin1(object->metaObject()->className()));
        }
    }
    return owners;
}

/// Stands for a desktop that is light or dark: gives the application's own style the desktop's window color.
class DesktopStyle final : public QProxyStyle
{
public:
    explicit DesktopStyle(bool isDark) : QProxyStyle{new ControlStyle}, m_dark{isDark} {}
    void polish(QPalette &palette) override
    {
        palette.setColor(QPalette::Window, m_dark ? Qt::black : Qt::white);
    }
    using QProxyStyle::polish;

private:
    const bool m_dark;
};

} // namespace

/// The application as main() starts it. Its steps build on each other.
class QuilmoraAppTest final : public ApplicationTest
{
    Q_OBJECT

public:
    using ApplicationTest::ApplicationTest;

private Q_SLOTS:
    void startingOpensNoDatabaseAndNoWindow()
    {
        QVERIFY(window() == nullptr);
        QVERIFY(!QFile::exists(databaseFile()));
        QVERIFY(!QFile::exists(m_home.path(u"Pictures/Quilmora"_s)));
        QCOMPARE(QGuiApplication::applicationDisplayName(), u"Quilmora"_s);
        QCOMPARE(QGuiApplication::desktopFileName(), u"app.quilmora.Quilmora"_s);
        for (const int side : {32, 64, 128}) {
            QVERIFY(QGuiApplication::windowIcon().availableSizes().contains({side, side}));
            QCOMPARE(QGuiApplication::windowIcon().pixmap(QSize{side, side}, 1.0).size(), QSize(side, side));
        }
    }

    void theMainWindowOpensTheDatabase()
    {
        m_application.openMainWindow();
        QVERIFY(QTest::qWaitForWindowActive(window()));
        QVERIFY(QFile::exists(databaseFile()));
        QVERIFY(QFile::exists(m_home.path(u"Pictures/Quilmora/coverimg"_s)));
        QVERIFY(field(texts::title) != nullptr);
    }

    void nothingOpensASecondWindow()
    {
        const auto visibleWindows = [] {
            QWidgetList windows = QApplication::topLevelWidgets();
            windows.removeIf([](const QWidget *window) { return !window->isVisible(); });
            return windows;
        };
        for (const auto key : {Qt::Key_N, Qt::Key_T, Qt::Key_O}) {
            for (const auto modifiers : {Qt::KeyboardModifiers{Qt::ControlModifier},
                                         Qt::KeyboardModifiers{Qt::ControlModifier | Qt::ShiftModifier}}) {
                QTest::keyClick(window(), key, modifiers);
                QCoreApplication::processEvents();
                QCOMPARE(visibleWindows(), QWidgetList{window()});
            }
        }
    }

    void theSchemeOfTheSystemIsFollowedLive()
    {
#ifdef Q_OS_MACOS
        QSKIP("The system cannot be made dark from here.");
#endif
        select(NavigationTab::settings);
        auto *heading = accessible::find<TextLabel>(window(), texts::settingsHeading);
        if (heading == nullptr) {
            QFAIL("The settings have no heading");
        }
        const auto colors = [this, heading] {
            const QImage shown = screenCapture::capture(window());
            return std::pair{screenCapture::colorAt(shown, {500, 3}),
                             heading->palette().color(QPalette::WindowText).rgba()};
        };
        const auto changeSystemTo = [this](bool dark) {
            QApplication::setStyle(new DesktopStyle{dark});
            QEvent change{QEvent::ThemeChange};
            QCoreApplication::sendEvent(window()->windowHandle(), &change);
        };
        QCOMPARE(colors(), std::pair(QColor{0xECECECU}, qRgba(0, 0, 0, 217)));
        changeSystemTo(true);
        QCOMPARE(Theme::current().scheme(), ColorScheme::dark);
        QCOMPARE(colors(), std::pair(QColor{0x323232U}, qRgba(255, 255, 255, 217)));
        changeSystemTo(false);
        QCOMPARE(Theme::current().scheme(), ColorScheme::light);
        QCOMPARE(colors(), std::pair(QColor{0xECECECU}, qRgba(0, 0, 0, 217)));
    }

    void anIdleWindowDoesNothing()
    {
        // The text cursor's blinking is the desktop's own.
        QGuiApplication::styleHints()->setCursorFlashTime(0);
        for (const NavigationTab tab : NavigationTab::allCases()) {
            select(tab);
            settle();
            QCOMPARE(timerOwners(window()) + timerOwners(&m_application), QStringList{});
            const BusyEvents events;
            QElapsedTimer clock;
            clock.start();
            while (!clock.hasExpired(1000)) {
                QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
                QThread::yieldCurrentThread();
            }
            QVERIFY2(events.seen.isEmpty(), qPrintable(tab.rawValue() + events.seen.join(u' ')));
        }
    }

    void theCloseKeysCloseTheWindow()
    {
        for (const auto key : {Qt::Key_W, Qt::Key_Q}) {
            window()->show();
            QVERIFY(QTest::qWaitForWindowActive(window()));
            QTest::keyClick(window(), key, Qt::ControlModifier);
            QTRY_VERIFY(!window()->isVisible());
        }
    }

private:
    QString databaseFile() const { return m_home.path(u".local/share/Quilmora/quilmora.db"_s); }
};

QUILMORA_TEST(QuilmoraAppTest, runInApplication)
#include "QuilmoraAppTest.moc"
