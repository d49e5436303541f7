#include "app/QuilmoraApp.h"

#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "screens/common/ControlStyle.h"
#include "screens/common/TextLabel.h"
#include "screens/common/Theme.h"
#include "screens/help/HelpContents.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QClipboard>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QProxyStyle>
#include <QShortcut>
#include <QStyleHints>
#include <QWindow>

#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

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

/// Stands for a desktop that is light or dark: gives the application's own style the desktop's window colour.
class DesktopStyle final : public QProxyStyle
{
public:
    explicit DesktopStyle(bool isDark) : QProxyStyle{new ControlStyle}, dark{isDark} {}
    void polish(QPalette &palette) override
    {
        palette.setColor(QPalette::Window, dark ? Qt::black : Qt::white);
    }
    using QProxyStyle::polish;

private:
    const bool dark;
};

} // namespace

/// The application as main() starts it. Its steps build on each other.
class QuilmoraAppTest final : public QObject
{
    Q_OBJECT

public:
    QuilmoraAppTest(QuilmoraApp &theApplication, const TemporaryHome &theHome)
        : application{theApplication},
          home{theHome}
    {
    }

private Q_SLOTS:
    void startingOpensNoDatabaseAndNoWindow();
    void theMainWindowOpensTheDatabase();
    void theWindowIsUsableAtOnce();
    void nothingOpensASecondWindow();
    void systemTextsAreChinese();
    void aVisitToAnotherTabEmptiesTheForm();
    void unsavedSettingsAreGoneAfterAVisitElsewhere();
    void theHelpTabTellsTheVersionAndCopiesAnAddress();
    void theSchemeOfTheSystemIsFollowedLive();
    void anIdleWindowDoesNothing_data();
    void anIdleWindowDoesNothing();
    void theCloseKeysCloseTheWindow_data();
    void theCloseKeysCloseTheWindow();

private:
    QString databaseFile() const { return home.path(u".local/share/Quilmora/quilmora.db"_s); }
    void select(const QString &tab)
    {
        click(accessible::find<NavTabButton>(application.mainWindow(), tab));
        QCoreApplication::processEvents();
    }
    QLineEdit *field(const QString &name)
    {
        return accessible::find<QLineEdit>(application.mainWindow(), name);
    }

    QuilmoraApp &application;
    const TemporaryHome &home;
};

void QuilmoraAppTest::startingOpensNoDatabaseAndNoWindow()
{
    QVERIFY(application.mainWindow() == nullptr);
    QVERIFY(!QFile::exists(databaseFile()));
    QVERIFY(!QFile::exists(home.path(u"Pictures/Quilmora"_s)));
    QCOMPARE(QGuiApplication::applicationDisplayName(), u"Quilmora"_s);
    QCOMPARE(QGuiApplication::desktopFileName(), u"app.quilmora.Quilmora"_s);
    for (const int side : {32, 64, 128}) {
        QVERIFY(QGuiApplication::windowIcon().availableSizes().contains({side, side}));
        QCOMPARE(QGuiApplication::windowIcon().pixmap(QSize{side, side}, 1.0).size(), QSize(side, side));
    }
}

void QuilmoraAppTest::theMainWindowOpensTheDatabase()
{
    application.openMainWindow();
    QVERIFY(QTest::qWaitForWindowActive(application.mainWindow()));
    QVERIFY(QFile::exists(databaseFile()));
    QVERIFY(QFile::exists(home.path(u"Pictures/Quilmora/coverimg"_s)));
}

void QuilmoraAppTest::theWindowIsUsableAtOnce()
{
    QCOMPARE(application.mainWindow()->windowTitle(), u"Quilmora"_s);
    QVERIFY(application.mainWindow()->width() >= 1000);
    QVERIFY(application.mainWindow()->height() >= 700);
    QVERIFY(field(u"视频封面标题文本"_s) != nullptr);
}

void QuilmoraAppTest::nothingOpensASecondWindow()
{
    const auto visibleWindows = [] {
        QWidgetList windows = QApplication::topLevelWidgets();
        windows.removeIf([](const QWidget *window) { return !window->isVisible(); });
        return windows;
    };
    for (const auto key : {Qt::Key_N, Qt::Key_T, Qt::Key_O}) {
        for (const auto modifiers : {Qt::KeyboardModifiers{Qt::ControlModifier},
                                     Qt::KeyboardModifiers{Qt::ControlModifier | Qt::ShiftModifier}}) {
            QTest::keyClick(application.mainWindow(), key, modifiers);
            QCoreApplication::processEvents();
            QCOMPARE(visibleWindows(), QWidgetList{application.mainWindow()});
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

void QuilmoraAppTest::systemTextsAreChinese()
{
    QFile missing{home.path(u"missing"_s)};
    QVERIFY(!missing.open(QIODevice::ReadOnly));
    QCOMPARE(missing.errorString(), u"此文件或目录不存在"_s);
}

void QuilmoraAppTest::aVisitToAnotherTabEmptiesTheForm()
{
    typeInto(field(u"视频封面标题文本"_s), u"标题"_s);
    click(accessible::find(application.mainWindow(), u"小红书"_s));
    select(u"帮助说明"_s);
    QVERIFY(field(u"视频封面标题文本"_s) == nullptr);
    select(u"生成封面"_s);
    QCOMPARE(field(u"视频封面标题文本"_s)->text(), QString{});
    auto *first = accessible::find<QAbstractButton>(application.mainWindow(), u"YouTube"_s);
    QVERIFY(first->isChecked());
}

void QuilmoraAppTest::unsavedSettingsAreGoneAfterAVisitElsewhere()
{
    select(u"功能设置"_s);
    typeInto(field(u"API Key"_s), u"not saved"_s);
    select(u"已生成列表"_s);
    select(u"功能设置"_s);
    QCOMPARE(field(u"API Key"_s)->text(), QString{});
}

void QuilmoraAppTest::theHelpTabTellsTheVersionAndCopiesAnAddress()
{
    select(u"帮助说明"_s);
    const HelpContents contents = HelpContents::ofThisBuild();
    QVERIFY(accessible::find(application.mainWindow(), u"版本号："_s + contents.version) != nullptr);
    click(accessible::find(application.mainWindow(), u"客服邮箱："_s + contents.email));
    QCOMPARE(QGuiApplication::clipboard()->text(), contents.email);
    QVERIFY(accessible::find(application.mainWindow(), u"已复制："_s + contents.email) != nullptr);
    // Left while the message is still up.
    select(u"功能设置"_s);
    QVERIFY(accessible::find(application.mainWindow(), u"已复制："_s + contents.email) == nullptr);
}

void QuilmoraAppTest::theSchemeOfTheSystemIsFollowedLive()
{
#ifdef Q_OS_MACOS
    QSKIP("The system cannot be made dark from here.");
#endif
    select(u"功能设置"_s);
    auto *heading = accessible::find<TextLabel>(application.mainWindow(), u"火山引擎图片生成"_s);
    if (heading == nullptr) {
        QFAIL("The settings have no heading");
    }
    const auto colours = [this, heading] {
        const QImage shown = screenCapture::capture(application.mainWindow());
        return std::pair{screenCapture::colorAt(shown, {500, 3}),
                         heading->palette().color(QPalette::WindowText).rgba()};
    };
    const auto changeSystemTo = [this](bool dark) {
        QApplication::setStyle(new DesktopStyle{dark});
        QEvent change{QEvent::ThemeChange};
        QCoreApplication::sendEvent(application.mainWindow()->windowHandle(), &change);
    };
    QCOMPARE(colours(), std::pair(QColor{0xECECECU}, qRgba(0, 0, 0, 217)));
    changeSystemTo(true);
    QCOMPARE(Theme::current().scheme(), ColorScheme::dark);
    QCOMPARE(colours(), std::pair(QColor{0x323232U}, qRgba(255, 255, 255, 217)));
    changeSystemTo(false);
    QCOMPARE(Theme::current().scheme(), ColorScheme::light);
    QCOMPARE(colours(), std::pair(QColor{0xECECECU}, qRgba(0, 0, 0, 217)));
}

void QuilmoraAppTest::anIdleWindowDoesNothing_data()
{
    QTest::addColumn<QString>("tab");
    QTest::newRow("generate") << u"生成封面"_s;
    QTest::newRow("history") << u"已生成列表"_s;
    QTest::newRow("settings") << u"功能设置"_s;
    QTest::newRow("help") << u"帮助说明"_s;
}

void QuilmoraAppTest::anIdleWindowDoesNothing()
{
    QFETCH(const QString, tab);
    // The text cursor's blinking is the desktop's own.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    select(tab);
    settle();
    QCOMPARE(timerOwners(application.mainWindow()), QStringList{});
    QCOMPARE(timerOwners(&application), QStringList{});
    const BusyEvents events;
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(1000)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 100);
        QThread::yieldCurrentThread();
    }
    QCOMPARE(events.seen, QStringList{});
}

void QuilmoraAppTest::theCloseKeysCloseTheWindow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("close") << Qt::Key_W;
    QTest::newRow("quit") << Qt::Key_Q;
}

void QuilmoraAppTest::theCloseKeysCloseTheWindow()
{
    QFETCH(const Qt::Key, key);
    application.mainWindow()->show();
    QVERIFY(QTest::qWaitForWindowActive(application.mainWindow()));
    QTest::keyClick(application.mainWindow(), key, Qt::ControlModifier);
    QTRY_VERIFY(!application.mainWindow()->isVisible());
}

int main(int argc, char *argv[])
{
    const TemporaryHome home;
    QuilmoraApp application{argc, argv};
    QuilmoraAppTest test{application, home};
    return QTest::qExec(&test, argc, argv);
}

#include "QuilmoraAppTest.moc"
