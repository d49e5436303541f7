#include "generation/ResponseParser.h"

#include "support/SamplePictures.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

QByteArray encodedPicture(QSize size)
{
    return samplePictures::png(samplePictures::picture(size)).toBase64();
}

/// Parses `body` and keeps which addresses were asked for; each is answered with `resource`.
struct Parsed {
    explicit Parsed(const QByteArray &body, const std::optional<QByteArray> &resource = {})
        : result{parseResponse(body, [this, &resource](const QUrl &url) {
              asked.append(url.toString());
              return resource;
          })}
    {
    }

    QString text() const { return localizedDescription(result); }
    QSize pictureSize() const
    {
        const auto *image = std::get_if<QImage>(&result);
        return image != nullptr ? image->size() : QSize{};
    }

    QStringList asked;
    GenerationResult result;
};

} // namespace

class ResponseParserTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDecisionsInTheirOrder_data();
    void theDecisionsInTheirOrder();
    void aPictureInTheAnswer();
    void onlyTheFirstElementCounts();
    void aPictureInTheAnswerWinsOverItsAddress();
    void theAddressIsReadWhenThePictureIsUnusable_data();
    void theAddressIsReadWhenThePictureIsUnusable();
    void anAddressThatGivesNoPictureFails();
    void badAddressesAreNotAskedFor_data();
    void badAddressesAreNotAskedFor();
    void ofDuplicateMembersTheLastCounts_data();
    void ofDuplicateMembersTheLastCounts();
    void numbersOfAnySizeAreRead_data();
    void numbersOfAnySizeAreRead();
    void aThousandLevelsAreRead();
    void whatTheServiceSends();
};

void ResponseParserTest::theDecisionsInTheirOrder_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &body, const QString &text) {
        QTest::newRow(name) << body << text;
    };
    const QString missing = u"响应缺少 data 字段："_s;
    const auto lacking = [&](const char *name, const QByteArray &body) {
        row(name, body, missing + QString::fromUtf8(body));
    };
    const QByteArray good = R"({"b64_json":")" + encodedPicture({4, 4}) + R"("})";

    row("error with code and message", R"({"error":{"code":"InvalidParameter","message":"bad size"}})",
        u"[InvalidParameter] bad size"_s);
    row("error with a number as code", R"({"error":{"code":400,"message":"x"}})", u"[] x"_s);
    row("empty error", R"({"error":{}})", u"[] 未知错误"_s);
    row("error whose message is no text", R"({"error":{"code":"C","message":7}})", u"[C] 未知错误"_s);
    row("error with empty texts", R"({"error":{"code":"","message":""}})", u"[] "_s);
    row("error wins over data", R"({"data":[)" + good + R"(],"error":{"message":"m"}})", u"[] m"_s);
    row("error text with line breaks", R"({"error":{"message":"一\n二 <b>"}})", u"[] 一\n二 <b>"_s);
    row("error text with escapes", R"({"err\u006fr":{"message":"\u4e00\ud83d\ude00\/\u0000"}})",
        u"[] 一😀/"_s + QChar::Null);
    row("white space everywhere", " {\r\n\t\"error\" : { } } ", u"[] 未知错误"_s);
    lacking("error that is a string", R"({"error":"nope"})");
    lacking("error that is an array", R"({"error":[{"message":"m"}]})");
    lacking("error that is null", R"({"error":null})");

    lacking("empty object", "{}");
    lacking("no data", R"({"created":1})");
    lacking("empty data", R"({"data":[]})");
    lacking("data is an object", R"({"data":)" + good + "}");
    lacking("data is null", R"({"data":null})");
    lacking("data is a text", R"({"data":"x"})");
    lacking("data of texts", R"({"data":["x"]})");
    lacking("data with one element that is no object", R"({"data":[{"error":{}},1]})");
    lacking("data with null at the end", R"({"data":[{},null]})");

    row("error of the element", R"({"data":[{"error":{"message":"内容违规","code":"C"}}]})", u"内容违规"_s);
    row("empty error of the element", R"({"data":[{"error":{}}]})", u"图片生成失败"_s);
    row("message of the element that is no text", R"({"data":[{"error":{"message":1}}]})", u"图片生成失败"_s);
    row("error of the element wins over its picture",
        R"({"data":[{"error":{},"b64_json":")" + encodedPicture({4, 4}) + R"("}]})", u"图片生成失败"_s);

    const QString failed = u"无法解析图片数据"_s;
    row("element without anything", R"({"data":[{}]})", failed);
    row("not base64 and no address", R"({"data":[{"b64_json":"!!!"}]})", failed);
    row("base64 of no picture", R"({"data":[{"b64_json":"aGVsbG8="}]})", failed);
    row("empty picture", R"({"data":[{"b64_json":""}]})", failed);
    row("picture that is a number", R"({"data":[{"b64_json":5}]})", failed);
    row("element's error that is no object", R"({"data":[{"error":"x"}]})", failed);
    row("picture cut in half", R"({"data":[{"b64_json":")" + encodedPicture({64, 64}).first(120) + R"("}]})",
        failed);
}

void ResponseParserTest::theDecisionsInTheirOrder()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    const Parsed parsed{body};
    QVERIFY(std::holds_alternative<GenError>(parsed.result));
    QCOMPARE(parsed.text(), text);
    QVERIFY(parsed.asked.isEmpty());
}

void ResponseParserTest::aPictureInTheAnswer()
{
    const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture({48, 32}));
    const Parsed fromJpeg{R"({"data":[{"b64_json":")" + jpeg.toBase64() + R"("}]})"};
    QCOMPARE(fromJpeg.pictureSize(), QSize(48, 32));

    const QImage picture = samplePictures::picture({20, 10});
    const Parsed fromPng{R"({"data":[{"b64_json":")" + samplePictures::png(picture).toBase64() + R"("}]})"};
    QVERIFY(std::get<QImage>(fromPng.result) == picture);
}

void ResponseParserTest::onlyTheFirstElementCounts()
{
    const QByteArray small = R"({"b64_json":")" + encodedPicture({4, 4}) + R"("})";
    const QByteArray large = R"({"b64_json":")" + encodedPicture({8, 8}) + R"("})";
    const Parsed twoPictures{R"({"data":[)" + small + ',' + large + "]}"};
    QCOMPARE(twoPictures.pictureSize(), QSize(4, 4));
    const Parsed errorSecond{R"({"data":[)" + small + R"(,{"error":{}}]})"};
    QCOMPARE(errorSecond.pictureSize(), QSize(4, 4));
    const Parsed pictureSecond{R"({"data":[{},)" + small + "]}"};
    QCOMPARE(pictureSecond.text(), u"无法解析图片数据"_s);
}

void ResponseParserTest::aPictureInTheAnswerWinsOverItsAddress()
{
    const Parsed parsed{R"({"data":[{"url":"https://example.org/a.png","b64_json":")" +
                            encodedPicture({4, 4}) + R"("}]})",
                        samplePictures::png(samplePictures::picture({8, 8}))};
    QCOMPARE(parsed.pictureSize(), QSize(4, 4));
    QVERIFY(parsed.asked.isEmpty());
}

void ResponseParserTest::theAddressIsReadWhenThePictureIsUnusable_data()
{
    QTest::addColumn<QByteArray>("member");
    QTest::newRow("no picture") << QByteArray{};
    QTest::newRow("not base64") << QByteArray{R"("b64_json":"a b=",)"};
    QTest::newRow("base64 of no picture") << QByteArray{R"("b64_json":"aGVsbG8=",)"};
    QTest::newRow("a number") << QByteArray{R"("b64_json":1,)"};
    QTest::newRow("null") << QByteArray{R"("b64_json":null,)"};
}

void ResponseParserTest::theAddressIsReadWhenThePictureIsUnusable()
{
    QFETCH(const QByteArray, member);
    const Parsed parsed{R"({"data":[{)" + member + R"("url":"https://example.org/a?Sig=a%2Fb"}]})",
                        samplePictures::png(samplePictures::picture({8, 8}))};
    QCOMPARE(parsed.pictureSize(), QSize(8, 8));
    QCOMPARE(parsed.asked, QStringList{u"https://example.org/a?Sig=a%2Fb"_s});
}

void ResponseParserTest::anAddressThatGivesNoPictureFails()
{
    const QByteArray body = R"({"data":[{"url":"https://example.org/a"}]})";
    for (const std::optional<QByteArray> &resource :
         {std::optional<QByteArray>{}, {"<html>404</html>"}, {QByteArray{}}}) {
        const Parsed parsed{body, resource};
        QCOMPARE(parsed.text(), u"无法解析图片数据"_s);
        QCOMPARE(parsed.asked.size(), 1);
    }
}

void ResponseParserTest::badAddressesAreNotAskedFor_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::newRow("empty") << QByteArray{R"("")"};
    QTest::newRow("with a blank") << QByteArray{R"("https://example.org/a b")"};
    QTest::newRow("no address at all") << QByteArray{R"("http://[oops")"};
    QTest::newRow("a number") << QByteArray{"1"};
    QTest::newRow("null") << QByteArray{"null"};
}

void ResponseParserTest::badAddressesAreNotAskedFor()
{
    QFETCH(const QByteArray, url);
    const Parsed parsed{R"({"data":[{"url":)" + url + "}]}",
                        samplePictures::png(samplePictures::picture({8, 8}))};
    QCOMPARE(parsed.text(), u"无法解析图片数据"_s);
    QVERIFY(parsed.asked.isEmpty());
}

void ResponseParserTest::ofDuplicateMembersTheLastCounts_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const QByteArray &body, const QString &text) {
        QTest::newRow(name) << body << text;
    };
    const QString failed = u"图片生成失败"_s;
    row("error", R"({"error":{"message":"a"},"error":{"message":"b"}})", u"[] b"_s);
    row("error that is none", R"({"error":{"message":"a"},"error":1,"data":[{"error":{}}]})", failed);
    row("code", R"({"error":{"code":"a","code":"b","message":"m"}})", u"[b] m"_s);
    row("message that is no text", R"({"error":{"message":"a","message":null}})", u"[] 未知错误"_s);
    row("name with an escape", R"({"error":{"message":"a","\u006dessage":"b"}})", u"[] b"_s);
    row("data", R"({"data":[{"error":{"message":"a"}}],"data":[{"error":{}}]})", failed);
    row("data that is none", R"({"data":[{}],"data":{}})",
        uR"(响应缺少 data 字段：{"data":[{}],"data":{}})"_s);
    row("error of the element", R"({"data":[{"error":1,"error":{"message":"a","message":"b"}}]})", u"b"_s);
    row("picture", R"({"data":[{"b64_json":")" + encodedPicture({4, 4}) + R"(","b64_json":1}]})",
        u"无法解析图片数据"_s);
}

void ResponseParserTest::ofDuplicateMembersTheLastCounts()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    QCOMPARE(Parsed{body}.text(), text);
}

void ResponseParserTest::numbersOfAnySizeAreRead_data()
{
    QTest::addColumn<QByteArray>("number");
    for (const char *number :
         {"9223372036854775808", "18446744073709551616", "-9223372036854775809",
          "123456789012345678901234567890123456789012345678901234567890", "0.1234567890123456789012345678901",
          "1e-400", "12345678901234567890123456789.5E+0000000000000000000000001"}) {
        QTest::newRow(number) << QByteArray{number};
    }
}

void ResponseParserTest::numbersOfAnySizeAreRead()
{
    QFETCH(const QByteArray, number);
    const Parsed parsed{R"({"n":[)" + number + R"(],"data":[{"b64_json":")" + encodedPicture({4, 4}) +
                        R"("}]})"};
    QCOMPARE(parsed.pictureSize(), QSize(4, 4));
    // What looks like a long number in a text stays as it is.
    const Parsed text{R"({"n":)" + number + R"(,"error":{"message":"\"1234567890123456789012345"}})"};
    QCOMPARE(text.text(), u"[] \"1234567890123456789012345"_s);
}

void ResponseParserTest::aThousandLevelsAreRead()
{
    const QByteArray nested = QByteArray(1000, '[') + '1' + QByteArray(1000, ']');
    QCOMPARE(Parsed{R"({"a":)" + nested + R"(,"error":{}})"}.text(), u"[] 未知错误"_s);
}

void ResponseParserTest::whatTheServiceSends()
{
    const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture({64, 36}));
    const QByteArray answer =
        R"({"model":"doubao-seedream-4-0-250828","created":1757321139,"data":[{"b64_json":")" +
        jpeg.toBase64() +
        R"(","size":"64x36"}],"usage":{"generated_images":1}})"
        "\n";
    QCOMPARE(Parsed{answer}.pictureSize(), QSize(64, 36));
    const QByteArray refusal = R"({"error":{"code":"AuthenticationError","message":"The API key is wrong. )"
                               R"(Request id: 0217","param":"","type":"Unauthorized"}})";
    QCOMPARE(Parsed{refusal}.text(), u"[AuthenticationError] The API key is wrong. Request id: 0217"_s);
}

QTEST_GUILESS_MAIN(ResponseParserTest)
#include "ResponseParserTest.moc"
