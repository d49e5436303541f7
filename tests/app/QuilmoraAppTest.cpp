#include "ApplicationTest.h"
#include "model/CoverSize.h"
#include "screens/help/HelpView.h"
#include "support/ScreenCapture.h"
#include "ui/style/ControlStyle.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/TextLabel.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QProxyStyle>
#include <QShortcut>
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
        QCOMPARE(window()->windowTitle(), u"Quilmora"_s);
        QVERIFY(window()->width() >= 1000);
        QVERIFY(window()->height() >= 700);
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
        // No menu and no other command that could.
        for (const QWidget *widget : QApplication::allWidgets()) {
            QVERIFY2(!widget->inherits("QMenuBar") && !widget->inherits("QMenu"),
                     widget->metaObject()->className());
            for (const auto *action : widget->actions()) {
                QVERIFY(!action->shortcuts().contains(QKeySequence{Qt::CTRL | Qt::Key_N}));
            }
        }
    }

    void systemTextsAreChinese()
    {
        QFile missing{m_home.path(u"missing"_s)};
        QVERIFY(!missing.open(QIODevice::ReadOnly));
        QCOMPARE(missing.errorString(), u"此文件或目录不存在"_s);
    }

    void aVisitToAnotherTabEmptiesTheForm()
    {
        typeInto(field(texts::title), u"标题"_s);
        click(find(CoverSize::presets().at(2).name));
        select(NavigationTab::help);
        QVERIFY(field(texts::title) == nullptr);
        select(NavigationTab::generate);
        QCOMPARE(field(texts::title)->text(), QString{});
        auto *first = accessible::find<QAbstractButton>(window(), CoverSize::presets().at(0).name);
        QVERIFY(first->isChecked());
    }

    void unsavedSettingsAreGoneAfterAVisitElsewhere()
    {
        select(NavigationTab::settings);
        typeInto(field(texts::apiKey), u"not saved"_s);
        select(NavigationTab::history);
        select(NavigationTab::settings);
        QCOMPARE(field(texts::apiKey)->text(), QString{});
    }

    void theHelpTabTellsTheVersionAndCopiesAnAddress()
    {
        select(NavigationTab::help);
        const AboutInformation contents = AboutInformation::current();
        QVERIFY(find(u"版本号："_s + contents.version) != nullptr);
        click(find(u"客服邮箱："_s + contents.email));
        QCOMPARE(QGuiApplication::clipboard()->text(), contents.email);
        QVERIFY(find(u"已复制："_s + contents.email) != nullptr);
        // Left while the message is still up.
        select(NavigationTab::settings);
        QVERIFY(find(u"已复制："_s + contents.email) == nullptr);
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

    void anIdleWindowDoesNothing_data()
    {
        QTest::addColumn<NavigationTab::Case>("tab");
        for (const NavigationTab tab : NavigationTab::allCases()) {
            QTest::newRow(qUtf8Printable(tab.rawValue())) << NavigationTab::Case{tab};
        }
    }

    void anIdleWindowDoesNothing()
    {
        QFETCH(const NavigationTab::Case, tab);
        // The text cursor's blinking is the desktop's own.
        QGuiApplication::styleHints()->setCursorFlashTime(0);
        select(tab);
        settle();
        QCOMPARE(timerOwners(window()), QStringList{});
        QCOMPARE(timerOwners(&m_application), QStringList{});
        const BusyEvents events;
        QElapsedTimer clock;
        clock.start();
        while (!clock.hasExpired(1000)) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
            QThread::yieldCurrentThread();
        }
        QCOMPARE(events.seen, QStringList{});
    }

    void theCloseKeysCloseTheWindow_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("close") << Qt::Key_W;
        QTest::newRow("quit") << Qt::Key_Q;
    }

    void theCloseKeysCloseTheWindow()
    {
        QFETCH(const Qt::Key, key);
        window()->show();
        QVERIFY(QTest::qWaitForWindowActive(window()));
        QTest::keyClick(window(), key, Qt::ControlModifier);
        QTRY_VERIFY(!window()->isVisible());
    }

private:
    QString databaseFile() const
    {
        return m_home.path(u".local/share/Quilmora/quilmora.db"_s);
    }
};

QUILMORA_TEST(QuilmoraAppTest, runInApplication)

#include "QuilmoraAppTest.moc"
