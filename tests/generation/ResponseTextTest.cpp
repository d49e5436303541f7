#include "generation/ResponseParser.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

namespace
{

constexpr QStringView missing = u"响应缺少 data 字段：";

QString textOf(const QByteArray &body)
{
    return localizedDescription(
        parseResponse(body, [](const QUrl &) { return std::optional<QByteArray>{}; }));
}

/// An answer without pictures that holds `text`, beginning with the six characters {"a":" of JSON.
QByteArray holding(const QString &text)
{
    return R"({"a":")" + text.toUtf8() + R"("})";
}

} // namespace

/// The texts made of bodies that hold no picture.
class ResponseTextTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bodiesThatAreNoObjectAreShownWhole_data();
    void bodiesThatAreNoObjectAreShownWhole();
    void bodiesThatAreNoUtf8_data();
    void bodiesThatAreNoUtf8();
    void aByteOrderMarkStays();
    void aMegabyteOfHtmlIsShownWhole();
    void deepNestingIsNoAnswer();
    void aLongBodyIsCutAfter500Characters();
    void aBodyOf500CharactersIsWhole();
    void charactersAreCountedAsPerceived_data();
    void charactersAreCountedAsPerceived();
    void thirtyMegabytesWithoutDataAreCut();
};

void ResponseTextTest::bodiesThatAreNoObjectAreShownWhole_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("plain text") << QByteArray{"Bad Gateway"};
    QTest::newRow("empty") << QByteArray{};
    QTest::newRow("blanks") << QByteArray{" \r\n"};
    QTest::newRow("HTML") << QByteArray{"<html>\n<body><h1>502 坏网关</h1></body></html>\n"};
    QTest::newRow("array") << QByteArray{R"([{"error":{"message":"m"}}])"};
    QTest::newRow("text") << QByteArray{R"("text")"};
    QTest::newRow("number") << QByteArray{"12"};
    QTest::newRow("null") << QByteArray{"null"};
    QTest::newRow("true") << QByteArray{"true"};
    QTest::newRow("cut object") << QByteArray{R"({"error":{"message":"m")"};
    QTest::newRow("two objects") << QByteArray{R"({"error":{}}{"error":{}})"};
    QTest::newRow("something behind the object") << QByteArray{R"({"error":{}} x)"};
    QTest::newRow("single quotes") << QByteArray{R"({'error':{}})"};
    QTest::newRow("comma too many") << QByteArray{R"({"error":{},})"};
    QTest::newRow("line break in a text") << QByteArray{R"({"error":{"code":"C","message":"a)"
                                                        "\n"
                                                        R"(b"}})"};
    QTest::newRow("tab in a text") << QByteArray{"{\"error\":{\"message\":\"a\tb\"}}"};
    QTest::newRow("NUL in a text") << QByteArray{"{\"error\":{\"message\":\"a\0b\"}}", 27};
    QTest::newRow("unknown escape") << QByteArray{R"({"error":{"message":"\q"}})"};
    QTest::newRow("short escape") << QByteArray{R"({"error":{"message":"\u41"}})"};
    QTest::newRow("high surrogate alone") << QByteArray{R"({"error":{"message":"\ud83d"}})"};
    QTest::newRow("high surrogate before a letter") << QByteArray{R"({"error":{"message":"\ud83d\u0041"}})"};
    QTest::newRow("low surrogate alone") << QByteArray{R"({"error":{"message":"\ude00"}})"};
    QTest::newRow("surrogates in the wrong order") << QByteArray{R"({"error":{"message":"\ude00\ud83d"}})"};
    QTest::newRow("nothing behind the point") << QByteArray{R"({"error":{},"n":1.})"};
    QTest::newRow("nothing before the point") << QByteArray{R"({"error":{},"n":.5})"};
    QTest::newRow("leading zero") << QByteArray{R"({"error":{},"n":01})"};
    QTest::newRow("long number with a leading zero")
        << QByteArray{R"({"error":{},"n":01234567890123456789})"};
    QTest::newRow("beyond the largest number") << QByteArray{R"({"error":{},"n":1e400})"};
}

void ResponseTextTest::bodiesThatAreNoObjectAreShownWhole()
{
    QFETCH(const QByteArray, body);
    QCOMPARE(textOf(body), QString::fromUtf8(body));
}

void ResponseTextTest::bodiesThatAreNoUtf8_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("a lone byte") << QByteArray{"caf\xe9 au lait"};
    QTest::newRow("cut within a character") << QByteArray{"坏网关"}.chopped(1);
    QTest::newRow("one byte of a character at the end") << QByteArray{"abc\xf0"};
    QTest::newRow("overlong") << QByteArray{"\xc0\xaf"};
    QTest::newRow("surrogate") << QByteArray{"\xed\xa0\x80"};
    QTest::newRow("within an object") << QByteArray{"{\"error\":{\"message\":\"\xff\"}}"};
    QTest::newRow("within an object without data") << QByteArray{"{\"a\":\"\xff\"}"};
    QTest::newRow("behind a backslash") << QByteArray{"{\"a\":\"\\\xff\"}"};
    QTest::newRow("behind an object") << QByteArray{"{}\xff"};
    QTest::newRow("UTF-16") << QByteArray{"\xff\xfe{\0}\0", 6};
    QTest::newRow("picture") << QByteArray{"\x89PNG\r\n\x1a\n"};
}

void ResponseTextTest::bodiesThatAreNoUtf8()
{
    QFETCH(const QByteArray, body);
    QCOMPARE(textOf(body), u"无法解析响应"_s);
}

void ResponseTextTest::aByteOrderMarkStays()
{
    const QByteArray mark = "\xef\xbb\xbf";
    QCOMPARE(textOf(mark), QString{QChar::ByteOrderMark});
    QCOMPARE(textOf(mark + "Bad Gateway"), QChar::ByteOrderMark + u"Bad Gateway"_s);
    // No JSON begins with it.
    QCOMPARE(textOf(mark + R"({"error":{}})"), QChar::ByteOrderMark + uR"({"error":{}})"_s);
    QCOMPARE(textOf(R"({"error":{"code":")" + mark + R"(C","message":"\ufeffm"}})"), u"[\ufeffC] \ufeffm"_s);
}

void ResponseTextTest::aMegabyteOfHtmlIsShownWhole()
{
    const QString html = u"<html>"_s + u"<p>网关错误 &amp; more</p>\n"_s.repeated(50'000) + u"</html>"_s;
    QVERIFY(html.size() > 1'000'000);
    QCOMPARE(textOf(html.toUtf8()), html);
}

void ResponseTextTest::deepNestingIsNoAnswer()
{
    const QByteArray body = R"({"a":)" + QByteArray(200'000, '[') + QByteArray(200'000, ']') + "}";
    QCOMPARE(textOf(body), QString::fromLatin1(body));
    const QByteArray open = QByteArray{R"({"data":[)"}.repeated(100'000);
    QCOMPARE(textOf(open), QString::fromLatin1(open));
}

void ResponseTextTest::aLongBodyIsCutAfter500Characters()
{
    const QByteArray body = holding(QString{1992, u'封'});
    const QString text = textOf(body);
    QCOMPARE(missing.size(), 13);
    QCOMPARE(QString::fromUtf8(body).size(), 2000);
    QCOMPARE(text, missing + QString::fromUtf8(body).first(500));
}

void ResponseTextTest::aBodyOf500CharactersIsWhole()
{
    for (const int length : {491, 492, 493}) {
        const QString body = QString::fromUtf8(holding(QString{length, u'x'}));
        QCOMPARE(body.size(), length + 8);
        QCOMPARE(textOf(body.toUtf8()), missing + body.first(std::min<qsizetype>(500, body.size())));
    }
}

void ResponseTextTest::charactersAreCountedAsPerceived_data()
{
    QTest::addColumn<QString>("character");
    QTest::newRow("letter") << u"x"_s;
    QTest::newRow("emoji outside the basic plane") << u"😀"_s;
    QTest::newRow("family joined of four") << u"👩‍👩‍👧‍👦"_s;
    QTest::newRow("emoji with a skin tone") << u"👍🏽"_s;
    QTest::newRow("flag") << u"🇨🇳"_s;
    QTest::newRow("letter with two marks") << u"e\u0301\u0323"_s;
    QTest::newRow("syllable of three parts") << u"\u1112\u1161\u11ab"_s;
}

void ResponseTextTest::charactersAreCountedAsPerceived()
{
    QFETCH(const QString, character);
    const QString body = QString::fromUtf8(holding(character.repeated(1000)));
    QCOMPARE(textOf(body.toUtf8()), missing + body.first(6 + 494 * character.size()));
}

void ResponseTextTest::thirtyMegabytesWithoutDataAreCut()
{
    const QString text = textOf(holding(QString{30'000'000, u'x'}));
    QCOMPARE(text.size(), 513);
}

QTEST_GUILESS_MAIN(ResponseTextTest)
#include "ResponseTextTest.moc"
