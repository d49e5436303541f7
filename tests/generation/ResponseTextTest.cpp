#include "generation/GenerationResult.h"
#include "generation/ResponseParser.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr QStringView missing = u"响应缺少 data 字段：";

QString textOf(const QByteArray &body)
{
    return localizedDescription(
        parseResponse(body, [](const QUrl &) { return std::optional<QByteArray>{}; }));
}

/// A response without pictures that holds `text`, beginning with the six characters {"a":" of JSON.
QByteArray holding(const QString &text) { return R"({"a":")" + text.toUtf8() + R"("})"; }

void addBodies(const std::initializer_list<std::pair<const char *, QByteArray>> &bodies)
{
    QTest::addColumn<QByteArray>("body");
    for (const auto &[name, body] : bodies) {
        QTest::newRow(name) << body;
    }
}

} // namespace

/// The texts of errors, and those made of bodies that hold no picture.
class ResponseTextTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bodiesThatAreNoObjectAreShownWhole_data()
    {
        addBodies({
            {"plain text", "Bad Gateway"},
            {"empty", ""},
            {"blanks", " \r\n"},
            {"HTML", "<html>\n<body><h1>502 坏网关</h1></body></html>\n"},
            {"array", R"([{"error":{"message":"m"}}])"},
            {"text", R"("text")"},
            {"number", "12"},
            {"null", "null"},
            {"true", "true"},
            {"truncated object", R"({"error":{"message":"m")"},
            {"two objects", R"({"error":{}}{"error":{}})"},
            {"something behind the object", R"({"error":{}} x)"},
            {"single quotes", R"({'error':{}})"},
            {"comma too many", R"({"error":{},})"},
            {"line break in a text", R"({"error":{"code":"C","message":"a)"
                                     "\n"
                                     R"(b"}})"},
            {"tab in a text", "{\"error\":{\"message\":\"a\tb\"}}"},
            {"NUL in a text", QByteArray{"{\"error\":{\"message\":\"a\0b\"}}", 27}},
            {"unknown escape", R"({"error":{"message":"\q"}})"},
            {"short escape", R"({"error":{"message":"\u41"}})"},
            {"high surrogate alone", R"({"error":{"message":"\ud83d"}})"},
            {"high surrogate before a letter", R"({"error":{"message":"\ud83d\u0041"}})"},
            {"low surrogate alone", R"({"error":{"message":"\ude00"}})"},
            {"surrogates in the wrong order", R"({"error":{"message":"\ude00\ud83d"}})"},
            {"nothing behind the point", R"({"error":{},"n":1.})"},
            {"nothing before the point", R"({"error":{},"n":.5})"},
            {"leading zero", R"({"error":{},"n":01})"},
            {"long number with a leading zero", R"({"error":{},"n":01234567890123456789})"},
            {"beyond the largest number", R"({"error":{},"n":1e400})"},
        });
    }

    void bodiesThatAreNoObjectAreShownWhole()
    {
        QFETCH(const QByteArray, body);
        QCOMPARE(textOf(body), QString::fromUtf8(body));
    }

    void bodiesThatAreNoUtf8_data()
    {
        addBodies({
            {"a lone byte", "caf\xe9 au lait"},
            {"truncated within a character", QByteArray{"坏网关"}.chopped(1)},
            {"one byte of a character at the end", "abc\xf0"},
            {"overlong", "\xc0\xaf"},
            {"surrogate", "\xed\xa0\x80"},
            {"within an object", "{\"error\":{\"message\":\"\xff\"}}"},
            {"within an object without data", "{\"a\":\"\xff\"}"},
            {"behind a backslash", "{\"a\":\"\\\xff\"}"},
            {"behind an object", "{}\xff"},
            {"UTF-16", QByteArray{"\xff\xfe{\0}\0", 6}},
            {"picture", "\x89PNG\r\n\x1a\n"},
        });
    }

    void bodiesThatAreNoUtf8()
    {
        QFETCH(const QByteArray, body);
        QCOMPARE(textOf(body), u"无法解析响应"_s);
    }

    void aByteOrderMarkStays()
    {
        const QByteArray mark = "\xef\xbb\xbf";
        QCOMPARE(textOf(mark), QString{QChar::ByteOrderMark});
        QCOMPARE(textOf(mark + "Bad Gateway"), QChar::ByteOrderMark + u"Bad Gateway"_s);
        // No JSON begins with it.
        QCOMPARE(textOf(mark + R"({"error":{}})"), QChar::ByteOrderMark + uR"({"error":{}})"_s);
        QCOMPARE(textOf(R"({"error":{"code":")" + mark + R"(C","message":"\ufeffm"}})"),
                 u"[\ufeffC] \ufeffm"_s);
    }

    void aMegabyteOfHtmlIsShownWhole()
    {
        const QString html = u"<html>"_s + u"<p>网关错误 &amp; more</p>\n"_s.repeated(50'000) + u"</html>"_s;
        QVERIFY(html.size() > 1'000'000);
        QCOMPARE(textOf(html.toUtf8()), html);
    }

    void deepNestingIsNoObject()
    {
        const QByteArray body = R"({"a":)" + QByteArray(200'000, '[') + QByteArray(200'000, ']') + "}";
        QCOMPARE(textOf(body), QString::fromLatin1(body));
        const QByteArray open = QByteArray{R"({"data":[)"}.repeated(100'000);
        QCOMPARE(textOf(open), QString::fromLatin1(open));
    }

    void aLongBodyIsTruncatedAfter500Characters()
    {
        QCOMPARE(missing.size(), 13);
        for (const int length : {491, 492, 493, 1992}) {
            const QString body = QString::fromUtf8(holding(QString{length, u'封'}));
            QCOMPARE(body.size(), length + 8);
            QCOMPARE(textOf(body.toUtf8()), missing + body.first(std::min<qsizetype>(500, body.size())));
        }
        QCOMPARE(textOf(holding(QString{30'000'000, u'x'})).size(), 513);
    }

    void charactersAreCountedAsPerceived()
    {
        // A letter, an emoji outside the basic plane, a family joined of four, a skin tone, a flag, a letter
        // with two marks, and a syllable of three parts.
        for (const QString &character : {u"x"_s, u"😀"_s, u"👩‍👩‍👧‍👦"_s, u"👍🏽"_s,
                                         u"🇨🇳"_s, u"e\u0301\u0323"_s, u"\u1112\u1161\u11ab"_s}) {
            const QString body = QString::fromUtf8(holding(character.repeated(1000)));
            QCOMPARE(textOf(body.toUtf8()), missing + body.first(6 + 494 * character.size()));
        }
    }

    void everyCaseHasItsTextAndPlace()
    {
        const QList<std::pair<GenError::Case, QString>> texts{
            {GenError::Case::invalidURL, u"API URL 无效，请在「功能设置」中配置"_s},
            {GenError::Case::invalidAPIKey, u"API Key 无效，请在「功能设置」中配置"_s},
            {GenError::Case::invalidModelID, u"Model ID 无效，请在「功能设置」中配置"_s},
            {GenError::Case::noData, u"未收到响应数据"_s},
            {GenError::Case::parseFailed, u"无法解析图片数据"_s}};
        for (qsizetype index = 0; index < texts.size(); ++index) {
            const auto &[kind, text] = texts.at(index);
            QCOMPARE(GenError{kind}.kind(), kind);
            QCOMPARE(GenError{kind}.errorDescription(), text);
            QCOMPARE(localizedDescription(GenError{kind}), text);
            QVERIFY(index == 0 || texts.at(index - 1).first < kind);
        }
    }

    void aServersMessageIsUnchanged()
    {
        const QString message = u"  <b>余额不足</b> & \"more\"\n "_s;
        const GenError error = GenError::serverError(message);
        QCOMPARE(error.kind(), GenError::Case::serverError);
        QCOMPARE(error.errorDescription(), message);
        QCOMPARE(GenError::serverError({}).errorDescription(), QString{});
    }

    void errorsCompareByCaseAndMessage()
    {
        QVERIFY(GenError{GenError::Case::noData} == GenError{GenError::Case::noData});
        QVERIFY(GenError{GenError::Case::noData} != GenError{GenError::Case::parseFailed});
        QVERIFY(GenError::serverError(u"a"_s) == GenError::serverError(u"a"_s));
        QVERIFY(GenError::serverError(u"a"_s) != GenError::serverError(u"b"_s));
    }

    void otherResultsAreDescribedToo()
    {
        QCOMPARE(localizedDescription(TransportError{u"连接被拒绝"_s}), u"连接被拒绝"_s);
        QCOMPARE(localizedDescription(QImage{1, 1, QImage::Format_RGB32}), QString{});
    }
};

QUILMORA_TEST(ResponseTextTest, runCoreTest)
#include "ResponseTextTest.moc"
