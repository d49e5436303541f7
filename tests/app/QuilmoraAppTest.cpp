#include "app/QuilmoraApp.h"

#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "screens/help/HelpContents.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"

#include <QAbstractEventDispatcher>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QShortcut>
#include <QStyleHints>

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
    void systemTextsAreChinese();
    void aVisitToAnotherTabEmptiesTheForm();
    void unsavedSettingsAreGoneAfterAVisitElsewhere();
    void theHelpTabTellsTheVersionAndCopiesAnAddress();
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
    QVERIFY(!QGuiApplication::windowIcon().isNull());
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
