#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "app/QuilmoraApp.h"
#include "screens/common/Sheet.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"
#include "support/ScriptedHttpServer.h"
#include "support/StandardOutput.h"
#include "support/WindowTexts.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDirIterator>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <memory>
#include <private/qguiapplication_p.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QString key = u"sk-Zq7Xw2Vb9Lk4Jm6Tn1"_s;

/// Whether `text` holds the key, a good part of it, or the form in which other schemes send it.
bool givesAway(const QString &text)
{
    constexpr qsizetype part = 8;
    for (qsizetype start = 0; start + part <= key.size(); ++start) {
        if (text.contains(QStringView{key}.mid(start, part))) {
            return true;
        }
    }
    return text.contains(QString::fromLatin1(key.toLatin1().toBase64()));
}

QStringList &told()
{
    static QStringList texts;
    return texts;
}

/// What assistive programs are told of by themselves as something changes.
void listen(QAccessibleEvent *event)
{
    // What has no text interface is passed over by the accessibility bus.
    QAccessibleInterface *piece = event->accessibleInterface();
    if (piece == nullptr || piece->textInterface() == nullptr) {
        return;
    }
    if (event->type() == QAccessible::TextInserted) {
        told().append(static_cast<QAccessibleTextInsertEvent *>(event)->textInserted());
    } else if (event->type() == QAccessible::TextRemoved) {
        told().append(static_cast<QAccessibleTextRemoveEvent *>(event)->textRemoved());
    } else if (event->type() == QAccessible::TextUpdated) {
        told().append(static_cast<QAccessibleTextUpdateEvent *>(event)->textInserted());
        told().append(static_cast<QAccessibleTextUpdateEvent *>(event)->textRemoved());
    } else if (event->type() == QAccessible::ValueChanged) {
        told().append(static_cast<QAccessibleValueChangeEvent *>(event)->value().toString());
    }
}

/// What the server answers next; told by the test and asked for by the server's thread.
class NextAnswer final
{
public:
    void set(const ScriptedAnswer &next)
    {
        const QMutexLocker lock{&mutex};
        answer = next;
    }
    ScriptedAnswer get()
    {
        const QMutexLocker lock{&mutex};
        return answer;
    }

private:
    QMutex mutex;
    ScriptedAnswer answer;
};

} // namespace

/// Where the key can be seen: in the settings' masked field and in the requests to the host of the settings.
/// This is the whole application, used as a user does. Its steps build on each other.
class KeySecrecyTest final : public QObject
{
    Q_OBJECT

public:
    KeySecrecyTest(QuilmoraApp &theApplication, const TemporaryHome &theHome)
        : application{theApplication},
          home{theHome}
    {
    }

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase() { QAccessible::installUpdateHandler(nullptr); }
    void enteringAndSavingShowsNothing();
    void theMaskedFieldGivesNothingAway();
    void nothingIsCopiedOutOfTheMaskedField();
    void faultsShowNothing_data();
    void faultsShowNothing();
    void otherHostsAreSentNothing_data();
    void otherHostsAreSentNothing();
    void noTabShowsIt();
    void noFileButTheDatabaseHoldsIt();

private:
    MainView *window() const { return application.mainWindow(); }
    QLineEdit *field(const QString &name) { return accessible::find<QLineEdit>(window(), name); }
    QWidget *find(const QString &name) { return accessible::find(window(), name); }
    void select(const QString &tab)
    {
        click(accessible::find<NavTabButton>(window(), tab));
        QCoreApplication::processEvents();
    }
    /// Fails the test if any text of any window has the key in it.
    static void lookEverywhere();
    void generateUntil(const QString &heading);

    QuilmoraApp &application;
    const TemporaryHome &home;
    const std::shared_ptr<NextAnswer> next = std::make_shared<NextAnswer>();
    ScriptedHttpServer server{[next = next](const ReceivedRequest &) {
        return next->get();
    }};
};

void KeySecrecyTest::initTestCase()
{
    // As when a screen reader has come.
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
    QAccessible::installUpdateHandler(listen);
    application.openMainWindow();
    QVERIFY(QTest::qWaitForWindowActive(window()));
}

void KeySecrecyTest::lookEverywhere()
{
    int seen = 0;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *shown : windows) {
        const QStringList texts = windowTexts(shown);
        seen += static_cast<int>(texts.size());
        for (const QString &text : texts) {
            QVERIFY2(!givesAway(text), qPrintable(text));
        }
    }
    QVERIFY2(seen > 50, "so much there is to be seen on every screen");
    QVERIFY(!givesAway(QGuiApplication::clipboard()->text()));
    for (const QString &text : std::as_const(told())) {
        QVERIFY2(!givesAway(text), qPrintable(text));
    }
}

void KeySecrecyTest::enteringAndSavingShowsNothing()
{
    select(u"功能设置"_s);
    typeInto(field(u"API URL"_s), server.url().toString());
    // As from the service's own page.
    QGuiApplication::clipboard()->setText(key);
    field(u"API Key"_s)->setFocus();
    QTest::keyClick(field(u"API Key"_s), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(field(u"API Key"_s)->text(), key);
    QGuiApplication::clipboard()->clear();
    // And by hand.
    field(u"API Key"_s)->selectAll();
    QTest::keyClick(field(u"API Key"_s), Qt::Key_Delete);
    QTest::keyClicks(field(u"API Key"_s), key);
    QCOMPARE(field(u"API Key"_s)->text(), key);
    lookEverywhere();
    QByteArray output;
    output = standardOutputOf([this] { click(find(u"保存设置"_s)); });
    QCOMPARE(output, QByteArray{});
    QCOMPARE(DatabaseManager::shared().getConfig().apiKey, key);
    Sheet *alert = openSheet();
    QVERIFY(alert != nullptr);
    lookEverywhere();
    click(accessible::find(alert, u"好的"_s));
    QTRY_VERIFY(openSheet() == nullptr);
}

void KeySecrecyTest::theMaskedFieldGivesNothingAway()
{
    select(u"生成封面"_s);
    select(u"功能设置"_s);
    QLineEdit *masked = field(u"API Key"_s);
    QCOMPARE(masked->text(), key);
    masked->setFocus();
    masked->selectAll();
    lookEverywhere();
    for (const auto query :
         {Qt::ImSurroundingText, Qt::ImTextBeforeCursor, Qt::ImTextAfterCursor, Qt::ImCurrentSelection}) {
        QVERIFY(!givesAway(masked->inputMethodQuery(query).toString()));
    }
}

void KeySecrecyTest::nothingIsCopiedOutOfTheMaskedField()
{
    QLineEdit *masked = field(u"API Key"_s);
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(u"before"_s);
    masked->setFocus();
    for (const auto command : {QKeySequence::Copy, QKeySequence::Cut}) {
        masked->setText(key);
        masked->selectAll();
        QTest::keySequence(masked, command);
        QCOMPARE(clipboard->text(), u"before"_s);
    }
    masked->setText(key);
    masked->selectAll();
    masked->copy();
    masked->cut();
    QCOMPARE(clipboard->text(), u"before"_s);
    const std::unique_ptr<QMenu> menu{masked->createStandardContextMenu()};
    for (QAction *action : menu->actions()) {
        if (action->isEnabled() && !action->isSeparator()) {
            QVERIFY2(!action->text().startsWith(u"复制"_s) && !action->text().startsWith(u"剪切"_s),
                     qPrintable(action->text()));
        }
    }
    QVERIFY(!masked->dragEnabled());
    clipboard->clear();
}

void KeySecrecyTest::generateUntil(const QString &heading)
{
    select(u"帮助说明"_s);
    select(u"生成封面"_s);
    typeInto(field(u"视频封面标题文本"_s), u"标题"_s);
    click(find(u"开始生成封面"_s));
    lookEverywhere();
    QTRY_VERIFY(find(heading) != nullptr);
}

void KeySecrecyTest::faultsShowNothing_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    const QByteArray error = R"({"error":{"code":"AuthenticationError","message":"the key is not valid"}})";
    QTest::newRow("refusal") << ScriptedAnswer::whole(error, "401 Unauthorized");
    for (const char *scheme : {R"(Basic realm="x")", R"(Digest realm="x", nonce="a")", "NTLM", "Negotiate"}) {
        QTest::newRow(scheme) << ScriptedAnswer::whole(error, "401 Unauthorized",
                                                       QByteArray{"WWW-Authenticate: "} + scheme + "\r\n");
    }
    QTest::newRow("page") << ScriptedAnswer::whole("<html>Bad Gateway</html>", "502 Bad Gateway");
    QTest::newRow("torn down") << ScriptedAnswer::reset();
    QTest::newRow("cut") << ScriptedAnswer::cut("{", 10);
    QTest::newRow("no HTTP") << ScriptedAnswer{{{"220 mail.example.org ESMTP\r\n"}}};
    QTest::newRow("circle") << ScriptedAnswer::redirect(307, "/again");
    QTest::newRow("no picture") << ScriptedAnswer::whole(R"({"data":[{"b64_json":"eA=="}]})");
}

void KeySecrecyTest::faultsShowNothing()
{
    QFETCH(const ScriptedAnswer, answer);
    next->set(answer);
    const qsizetype before = server.requestCount();
    generateUntil(u"生成失败"_s);
    lookEverywhere();
    // What a user may hand on.
    for (auto *message : window()->findChildren<QPlainTextEdit *>()) {
        message->selectAll();
        message->copy();
    }
    lookEverywhere();
    QVERIFY(server.requestCount() > before);
    QCOMPARE(server.requests().constLast().header("Authorization"), "Bearer " + key.toLatin1());
    QVERIFY(!givesAway(QString::fromUtf8(server.requests().constLast().body)));
}

void KeySecrecyTest::otherHostsAreSentNothing_data()
{
    QTest::addColumn<bool>("isRedirect");
    QTest::newRow("where a redirect leads") << true;
    QTest::newRow("where the picture lies") << false;
}

void KeySecrecyTest::otherHostsAreSentNothing()
{
    QFETCH(const bool, isRedirect);
    ScriptedHttpServer other{[](const auto &) {
        return ScriptedAnswer::whole(samplePictures::png(samplePictures::picture({64, 36})));
    }};
    const QByteArray address = other.url(u"/cover.png"_s).toEncoded();
    next->set(isRedirect ? ScriptedAnswer::redirect(307, address)
                         : ScriptedAnswer::whole(R"({"data":[{"url":")" + address + R"("}]})"));
    generateUntil(isRedirect ? u"生成失败"_s : u"生成成功"_s);
    lookEverywhere();
    QCOMPARE(other.requestCount(), isRedirect ? 0 : 1);
    const QList<ReceivedRequest> requests = other.requests();
    for (const ReceivedRequest &request : requests) {
        QVERIFY(!givesAway(QString::fromUtf8(request.head + request.body)));
        QCOMPARE(request.headerCount("Authorization"), 0);
    }
}

void KeySecrecyTest::noTabShowsIt()
{
    for (const QString &tab : {u"已生成列表"_s, u"功能设置"_s, u"帮助说明"_s, u"生成封面"_s}) {
        select(tab);
        lookEverywhere();
    }
    QCOMPARE(DatabaseManager::shared().fetchAllHistory().size(), 1);
}

void KeySecrecyTest::noFileButTheDatabaseHoldsIt()
{
    QStringList holders;
    QDirIterator files{home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories};
    while (files.hasNext()) {
        QFile file{files.next()};
        QVERIFY(file.open(QIODevice::ReadOnly));
        if (file.readAll().contains(key.toLatin1())) {
            holders.append(files.fileName());
        }
    }
    QCOMPARE(holders, QStringList{u"quilmora.db"_s});
}

int main(int argc, char *argv[])
{
    const TemporaryHome home;
    QuilmoraApp application{argc, argv};
    KeySecrecyTest test{application, home};
    return QTest::qExec(&test, argc, argv);
}

#include "KeySecrecyTest.moc"
