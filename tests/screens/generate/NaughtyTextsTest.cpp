#include "support/NaughtyTexts.h"

#include "screens/generate/MessageView.h"
#include "support/GenerateScreen.h"
#include "support/SettingsScreen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// Pastes `text` in place of what is there, as a user does.
void paste(QWidget *field, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    click(field);
    QTest::keySequence(field, QKeySequence::SelectAll);
    QTest::keySequence(field, QKeySequence::Paste);
}

QByteArray responseWith(const QString &text)
{
    return QJsonDocument{QJsonObject{{u"error"_s, QJsonObject{{u"code"_s, text}, {u"message"_s, text}}}}}
        .toJson();
}

void addTexts()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("readable");
    for (const NaughtyText &naughty : naughtyTexts()) {
        QTest::newRow(naughty.name) << naughty.text << naughty.readable;
    }
    QString large{1'048'576, u' '};
    for (qsizetype i = 0; i < large.size(); ++i) {
        large[i] = QChar{static_cast<char16_t>(0x4e00 + i % 20'000)};
    }
    QTest::newRow("a megabyte") << large << large;
}

} // namespace

/// Texts that careless programs stumble over, in every field and in responses.
class NaughtyTextsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsTypedIntoTheFormIsSentAndStoredAsItIs_data() { addTexts(); }

    void whatIsTypedIntoTheFormIsSentAndStoredAsItIs()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, readable);
        GenerateScreen screen;
        click(screen.find(u"自定义..."_s));
        paste(screen.find<QLineEdit>(texts::customExpression), text);
        paste(screen.titleField(), text);
        paste(screen.find<QLineEdit>(texts::scene), text);
        paste(screen.advancedEditor(), text);
        QVERIFY(screen.titleField()->text() == readable);
        click(screen.generateButton());
        QTRY_VERIFY_WITH_TIMEOUT(screen.shows(texts::succeeded), 20000);

        const QString sent = screen.sentPrompt();
        QVERIFY(sent.count(readable.trimmed()) >= 4);
        const QList<HistoryRecord> records = screen.database.fetchAllHistory();
        QCOMPARE(records.size(), 1);
        QVERIFY(records.constFirst().prompt == sent);
        // The window goes on.
        screen.goBack();
        QVERIFY(screen.succeeds());
        QCOMPARE(screen.server.requestCount(), 2);
    }

    void settingsComeBackAsTheyWereShown_data() { addTexts(); }

    void settingsComeBackAsTheyWereShown()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, readable);
        SettingsScreen screen;
        for (const QString &name : texts::settings) {
            paste(screen.field(name), text);
            QVERIFY(screen.field(name)->text() == readable);
        }
        screen.save();
        QTRY_VERIFY(openSheet() != nullptr);
        QVERIFY(SettingsScreen::closeAlert());
        for (const QString &value : screen.stored()) {
            QVERIFY(value == readable.trimmed());
        }
    }

    void aResponsesTextIsShownAsItIs_data() { addTexts(); }

    void aResponsesTextIsShownAsItIs()
    {
        QFETCH(const QString, text);
        const QByteArray body = responseWith(text);
        // With half a surrogate pair it is no JSON.
        const QString expected =
            text.isValidUtf16() ? QString{u'[' + text + u"] "_s + text} : QString::fromUtf8(body);
        GenerateScreen screen{GenerateScreen::respondWithText(body)};
        QVERIFY(screen.fails());
        auto *message = screen.window.findChild<MessageView *>();
        QVERIFY(message != nullptr);
        message->selectAll();
        message->copy();
        QVERIFY(QGuiApplication::clipboard()->text() == expected);
        screen.goBack();
        QVERIFY(screen.titleField() != nullptr);
    }
};

QUILMORA_TEST(NaughtyTextsTest, runScreenTest)

#include "NaughtyTextsTest.moc"
