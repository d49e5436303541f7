#include "support/NaughtyTexts.h"

#include "GenerateScreen.h"
#include "platform/WellFormedText.h"
#include "screens/common/MessageView.h"
#include "screens/common/Sheet.h"
#include "screens/settings/SettingsView.h"
#include "support/StandardOutput.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// Pastes `text` in place of what is there, as a user does.
void paste(QWidget *field, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    click(field);
    QTest::keySequence(field, QKeySequence::SelectAll);
    QTest::keySequence(field, QKeySequence::Paste);
}

QByteArray answerWith(const QString &text)
{
    return QJsonDocument{QJsonObject{{u"error"_s, QJsonObject{{u"code"_s, text}, {u"message"_s, text}}}}}
        .toJson();
}

void addTexts()
{
    QTest::addColumn<QString>("text");
    for (const NaughtyText &naughty : naughtyTexts()) {
        QTest::newRow(naughty.name) << naughty.text;
    }
    QString large{1'048'576, u' '};
    for (qsizetype i = 0; i < large.size(); ++i) {
        large[i] = QChar{static_cast<char16_t>(0x4e00 + i % 20'000)};
    }
    QTest::newRow("a megabyte") << large;
}

} // namespace

/// Texts that careless programs stumble over, in every field and in answers.
class NaughtyTextsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsTypedIntoTheFormIsSentAndStoredAsItIs_data() { addTexts(); }
    void whatIsTypedIntoTheFormIsSentAndStoredAsItIs();
    void settingsComeBackAsTheyWereShown_data() { addTexts(); }
    void settingsComeBackAsTheyWereShown();
    void anAnswersTextIsShownAsItIs_data() { addTexts(); }
    void anAnswersTextIsShownAsItIs();
};

void NaughtyTextsTest::whatIsTypedIntoTheFormIsSentAndStoredAsItIs()
{
    QFETCH(const QString, text);
    GenerateScreen screen;
    click(screen.find(u"自定义..."_s));
    paste(screen.find<QLineEdit>(u"请输入自定义表情描述"_s), text);
    paste(screen.titleField(), text);
    paste(screen.find<QLineEdit>(u"背景场景"_s), text);
    paste(screen.advancedEditor(), text);
    const QString typed = screen.titleField()->text();
    QVERIFY(typed == wellFormedText::from(text));
    click(screen.generateButton());
    QTRY_VERIFY_WITH_TIMEOUT(screen.shows(u"生成成功"_s), 20000);

    const QString sent = screen.requestBody()[u"prompt"_s].toString();
    QVERIFY(sent.count(typed.trimmed()) >= 4);
    const QList<HistoryRecord> records = screen.database.fetchAllHistory();
    QCOMPARE(records.size(), 1);
    QVERIFY(records.constFirst().prompt == sent);
    // The window goes on.
    click(screen.find(u"返回表单"_s));
    QTRY_VERIFY(screen.titleField() != nullptr);
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成成功"_s));
    QCOMPARE(screen.server.requestCount(), 2);
}

void NaughtyTextsTest::settingsComeBackAsTheyWereShown()
{
    QFETCH(const QString, text);
    const TemporaryHome home;
    DatabaseManager database{home.path(u"data"_s), home.path(u"covers"_s)};
    database.saveConfig(u"http://127.0.0.1:9/"_s, u"old-key"_s, u"old-model"_s);
    SettingsView view{database};
    showWindow(view, {1000, 640});
    QString shown;
    for (const QString &name : {u"API URL"_s, u"API Key"_s, u"Model ID"_s}) {
        auto *field = accessible::find<QLineEdit>(&view, name);
        paste(field, text);
        shown = field->text();
    }
    click(accessible::find<QAbstractButton>(&view, u"保存设置"_s));
    QTRY_VERIFY(openSheet() != nullptr);
    click(accessible::find<QAbstractButton>(openSheet(), u"好的"_s));
    QTRY_VERIFY(openSheet() == nullptr);

    const VolcengineConfig stored = database.getConfig();
    for (const QString &value : {stored.apiURL, stored.apiKey, stored.modelID}) {
        QVERIFY(value == shown.trimmed());
    }
}

void NaughtyTextsTest::anAnswersTextIsShownAsItIs()
{
    QFETCH(const QString, text);
    const QByteArray answer = answerWith(text);
    // With half a surrogate pair it is no JSON.
    const QString expected =
        text.isValidUtf16() ? QString{u'[' + text + u"] "_s + text} : QString::fromUtf8(answer);
    GenerateScreen screen{GenerateScreen::answerWithText(answer)};
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成失败"_s));
    auto *message = screen.window.findChild<MessageView *>();
    QVERIFY(message != nullptr);
    message->selectAll();
    message->copy();
    QVERIFY(QGuiApplication::clipboard()->text() == expected);
    click(screen.find(u"返回表单"_s));
    QTRY_VERIFY(screen.titleField() != nullptr);
}

int main(int argc, char *argv[])
{
    return runScreenTest<NaughtyTextsTest>(argc, argv);
}

#include "NaughtyTextsTest.moc"
