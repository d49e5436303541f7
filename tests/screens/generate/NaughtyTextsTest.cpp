#include "screens/generate/MessageView.h"
#include "support/GenerateScreen.h"
#include "support/SettingsScreen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonDocument>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// A text that careless programs stumble over.
struct NaughtyText {
    const char *name;
    QString text;
    /// What a field shows of it: without NUL, at which a statement of SQL ends, halves of surrogate pairs,
    /// for which Qt writes a question mark
    /// in UTF-8, and characters that are reserved.
    QString readable = text;
};

const QList<NaughtyText> &naughtyTexts()
{
    static const QList<NaughtyText> texts{
        {"control characters", u"a\u0001\u0002\u0007\u0008\u001b[31mb\u007f\u0085c"_s},
        {"a NUL", QString::fromUtf16(u"ab\0cd", 5), u"ab\ufffdcd"_s},
        {"half a surrogate pair, the first", QString{u"a"_s + QChar{0xd83d} + u'b'}, u"a?b"_s},
        {"half a surrogate pair, the second", QString{u"a"_s + QChar{0xde00} + u'b'}, u"a?b"_s},
        {"bidirectional controls", u"\u202e\u2066abc\u2069\u202c\u200f\u061c"_s},
        {"a byte order mark and what has no width", u"\ufeffa\u200b\u200d\u2060b"_s},
        {"what is no character", u"a\ufffe\uffffb\ufdd0c"_s, u"a\ufffe\uffffb\ufffdc"_s},
        {"combining sequences", QString{u"e"_s + QString{300, QChar{0x0301}} + u"g͎̼͙̏͌"_s}},
        {"emoji of many parts", u"👩‍👩‍👧‍👦🏳️‍🌈👍🏽🇨🇳"_s},
        {"quotes and a statement of SQL", u"'); DROP TABLE history; --\"`;' OR '1'='1"_s},
        {"HTML", u"<script>alert(1)</script><img src='file:///etc/passwd'>&amp;&lt;<b>"_s},
        {"format strings", u"%s%n%d%x%1%2 {} {0} ${HOME} $(id) `id`"_s},
        {"JSON", u"\"}],\"error\":{\"message\":\"\\u0000\\\\\"}"_s},
        {"paths", u"../../../../etc/passwd /dev/null C:\\con.png ~root"_s},
        {"right to left", u"العربية עברית"_s},
    };
    return texts;
}

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
        const int width = screen.view->widget()->width();
        click(screen.find(u"自定义..."_s));
        paste(screen.customExpression(), text);
        paste(screen.titleField(), text);
        paste(screen.sceneField(), text);
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
        QVERIFY(screen.titleField()->text() == readable);
        QCOMPARE(screen.view->widget()->width(), width);
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
