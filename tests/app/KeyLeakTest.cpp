#include "ApplicationTest.h"
#include "store/DatabaseManager.h"
#include "support/Drawing.h"
#include "support/SamplePictures.h"
#include "support/ScriptedHttpServer.h"
#include "support/StandardOutput.h"
#include "ui/dialogs/Sheet.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QDirIterator>
#include <QMenu>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <memory>
#include <private/qguiapplication_p.h>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

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

bool isMaskedContent(const QObject &object, const char *property)
{
    const auto *field = qobject_cast<const QLineEdit *>(&object);
    return field != nullptr && field->echoMode() == QLineEdit::Password &&
           (qstrcmp(property, "text") == 0 || qstrcmp(property, "selectedText") == 0);
}

void addProperties(const QObject &object, QStringList &texts)
{
    texts.append(object.objectName());
    for (int index = 0; index < object.metaObject()->propertyCount(); ++index) {
        const QMetaProperty property = object.metaObject()->property(index);
        if (!isMaskedContent(object, property.name())) {
            const QStringList value = property.read(&object).toStringList();
            texts.append(value.isEmpty()
                             ? QString{}
                             : QString::fromLatin1(object.metaObject()->className()) + u'.' +
                                   QString::fromLatin1(property.name()) + u": " + value.join(u'\n'));
        }
    }
    const QList<QByteArray> dynamicNames = object.dynamicPropertyNames();
    for (const QByteArray &name : dynamicNames) {
        texts.append(object.property(name.constData()).toString());
    }
}

void addAccessible(QAccessibleInterface *piece, QStringList &texts)
{
    if (piece == nullptr) {
        return;
    }
    for (const auto kind : {QAccessible::Name, QAccessible::Description, QAccessible::Value,
                            QAccessible::Help, QAccessible::Accelerator, QAccessible::DebugDescription}) {
        texts.append(QString::number(kind) + u": " + piece->text(kind));
    }
    if (QAccessibleTextInterface *text = piece->textInterface()) {
        texts.append(u"text: " + text->text(0, text->characterCount()));
    }
    if (QAccessibleValueInterface *value = piece->valueInterface()) {
        texts.append(u"value: " + value->currentValue().toString());
    }
    if (QAccessibleActionInterface *action = piece->actionInterface()) {
        texts.append(action->actionNames());
    }
    for (int index = 0; index < piece->childCount(); ++index) {
        addAccessible(piece->child(index), texts);
    }
}

/// Every text in a window that anybody could come by: what is drawn, the properties of every piece, and what
/// assistive programs can ask for, each in every way they can ask. Only the content of a masked field, which
/// is the user's, is left out of its properties.
QStringList windowTexts(QWidget *window)
{
    QStringList texts = Drawing{window}.strings();
    addAccessible(accessible::interfaceOf(window), texts);
    addProperties(*window, texts);
    const QObjectList objects = window->findChildren<QObject *>();
    for (const QObject *object : objects) {
        addProperties(*object, texts);
    }
    texts.removeAll(QString{});
    return texts;
}

QStringList &announced()
{
    static QStringList texts;
    return texts;
}

/// What is announced to assistive programs as something changes.
void listen(QAccessibleEvent *event)
{
    // What has no text interface is passed over by the accessibility bus.
    QAccessibleInterface *piece = event->accessibleInterface();
    if (piece == nullptr || piece->textInterface() == nullptr) {
        return;
    }
    if (event->type() == QAccessible::TextInserted) {
        announced().append(static_cast<QAccessibleTextInsertEvent *>(event)->textInserted());
    } else if (event->type() == QAccessible::TextRemoved) {
        announced().append(static_cast<QAccessibleTextRemoveEvent *>(event)->textRemoved());
    } else if (event->type() == QAccessible::TextUpdated) {
        announced().append(static_cast<QAccessibleTextUpdateEvent *>(event)->textInserted());
        announced().append(static_cast<QAccessibleTextUpdateEvent *>(event)->textRemoved());
    } else if (event->type() == QAccessible::ValueChanged) {
        announced().append(static_cast<QAccessibleValueChangeEvent *>(event)->value().toString());
    }
}

/// The next response of the server; set by the test and asked for by the server's thread.
class NextResponse final
{
public:
    void set(const ScriptedResponse &next)
    {
        const QMutexLocker lock{&m_mutex};
        m_response = next;
    }
    ScriptedResponse get()
    {
        const QMutexLocker lock{&m_mutex};
        return m_response;
    }

private:
    QMutex m_mutex;
    ScriptedResponse m_response;
};

} // namespace

/// Where the key can be seen: in the settings' masked field and in the requests to the host of the settings.
/// This is the whole application, used as a user does. Its steps build on each other.
class KeyLeakTest final : public ApplicationTest
{
    Q_OBJECT

public:
    using ApplicationTest::ApplicationTest;

private Q_SLOTS:
    void initTestCase()
    {
        // As with a screen reader.
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(true);
        QAccessible::installUpdateHandler(listen);
        m_application.openMainWindow();
        QVERIFY(QTest::qWaitForWindowActive(window()));
    }

    void cleanupTestCase() { QAccessible::installUpdateHandler(nullptr); }

    void enteringAndSavingShowsNothing()
    {
        select(NavigationTab::settings);
        typeInto(field(texts::apiURL), m_server.url().toString());
        // As from the service's own page.
        QGuiApplication::clipboard()->setText(key);
        field(texts::apiKey)->setFocus();
        QTest::keyClick(field(texts::apiKey), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field(texts::apiKey)->text(), key);
        QGuiApplication::clipboard()->clear();
        // And by hand.
        field(texts::apiKey)->selectAll();
        QTest::keyClick(field(texts::apiKey), Qt::Key_Delete);
        QTest::keyClicks(field(texts::apiKey), key);
        QCOMPARE(field(texts::apiKey)->text(), key);
        lookEverywhere();
        QByteArray output;
        output = standardOutputOf([this] { click(find(texts::saveSettings)); });
        QCOMPARE(output, QByteArray{});
        QCOMPARE(DatabaseManager::shared().getConfig().apiKey, key);
        Sheet *alert = openSheet();
        QVERIFY(alert != nullptr);
        lookEverywhere();
        click(accessible::find(alert, texts::confirm));
        QTRY_VERIFY(openSheet() == nullptr);
    }

    void theMaskedFieldGivesNothingAway()
    {
        select(NavigationTab::generate);
        select(NavigationTab::settings);
        QLineEdit *masked = field(texts::apiKey);
        QCOMPARE(masked->text(), key);
        masked->setFocus();
        masked->selectAll();
        lookEverywhere();
        for (const auto query :
             {Qt::ImSurroundingText, Qt::ImTextBeforeCursor, Qt::ImTextAfterCursor, Qt::ImCurrentSelection}) {
            QVERIFY(!givesAway(masked->inputMethodQuery(query).toString()));
        }
    }

    void nothingIsCopiedOutOfTheMaskedField()
    {
        QLineEdit *masked = field(texts::apiKey);
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

    void faultsShowNothing_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        const QByteArray error =
            R"({"error":{"code":"AuthenticationError","message":"the key is not valid"}})";
        QTest::newRow("refusal") << ScriptedResponse::whole(error, "401 Unauthorized");
        for (const char *scheme :
             {R"(Basic realm="x")", R"(Digest realm="x", nonce="a")", "NTLM", "Negotiate"}) {
            QTest::newRow(scheme) << ScriptedResponse::whole(
                error, "401 Unauthorized", QByteArray{"WWW-Authenticate: "} + scheme + "\r\n");
        }
        QTest::newRow("page") << ScriptedResponse::whole("<html>Bad Gateway</html>", "502 Bad Gateway");
        QTest::newRow("torn down") << ScriptedResponse::reset();
        QTest::newRow("truncated") << ScriptedResponse::cut("{", 10);
        QTest::newRow("no HTTP") << ScriptedResponse{{{"220 mail.example.org ESMTP\r\n"}}};
        QTest::newRow("circle") << ScriptedResponse::redirect(307, "/again");
        QTest::newRow("no picture") << ScriptedResponse::whole(R"({"data":[{"b64_json":"eA=="}]})");
    }

    void faultsShowNothing()
    {
        QFETCH(const ScriptedResponse, response);
        m_next->set(response);
        const qsizetype before = m_server.requestCount();
        generateUntil(texts::failed);
        lookEverywhere();
        // What a user may hand on.
        for (auto *message : window()->findChildren<QPlainTextEdit *>()) {
            message->selectAll();
            message->copy();
        }
        lookEverywhere();
        QVERIFY(m_server.requestCount() > before);
        QCOMPARE(m_server.requests().constLast().header("Authorization"), "Bearer " + key.toLatin1());
        QVERIFY(!givesAway(QString::fromUtf8(m_server.requests().constLast().body)));
    }

    void otherHostsAreSentNothing()
    {
        // Where a redirect leads, and where the picture lies.
        for (const bool isRedirect : {true, false}) {
            ScriptedHttpServer other{[](const auto &) {
                return ScriptedResponse::whole(samplePictures::png(samplePictures::picture({64, 36})));
            }};
            const QByteArray address = other.url(u"/cover.png"_s).toEncoded();
            m_next->set(isRedirect ? ScriptedResponse::redirect(307, address)
                                   : ScriptedResponse::whole(R"({"data":[{"url":")" + address + R"("}]})"));
            generateUntil(isRedirect ? texts::failed : texts::succeeded);
            lookEverywhere();
            QCOMPARE(other.requestCount(), isRedirect ? 0 : 1);
            const QList<ReceivedRequest> requests = other.requests();
            for (const ReceivedRequest &request : requests) {
                QVERIFY(!givesAway(QString::fromUtf8(request.head + request.body)));
                QCOMPARE(request.headerCount("Authorization"), 0);
            }
        }
    }

    void noTabShowsIt()
    {
        for (const NavigationTab tab : NavigationTab::allCases()) {
            select(tab);
            lookEverywhere();
        }
        QCOMPARE(DatabaseManager::shared().fetchAllHistory().size(), 1);
    }

    void noFileButTheDatabaseHoldsIt()
    {
        QStringList holders;
        QDirIterator files{m_home.path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories};
        while (files.hasNext()) {
            QFile file{files.next()};
            QVERIFY(file.open(QIODevice::ReadOnly));
            if (file.readAll().contains(key.toLatin1())) {
                holders.append(files.fileName());
            }
        }
        QCOMPARE(holders, QStringList{u"quilmora.db"_s});
    }

private:
    /// Fails the test if any text of any window has the key in it.
    static void lookEverywhere()
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
        for (const QString &text : std::as_const(announced())) {
            QVERIFY2(!givesAway(text), qPrintable(text));
        }
    }

    void generateUntil(const QString &heading)
    {
        select(NavigationTab::help);
        select(NavigationTab::generate);
        typeInto(field(texts::title), u"标题"_s);
        click(find(texts::start));
        lookEverywhere();
        QTRY_VERIFY(find(heading) != nullptr);
    }

    const std::shared_ptr<NextResponse> m_next = std::make_shared<NextResponse>();
    ScriptedHttpServer m_server{[next = m_next](const ReceivedRequest &) {
        return next->get();
    }};
};

QUILMORA_TEST(KeyLeakTest, runInApplication)
#include "KeyLeakTest.moc"
