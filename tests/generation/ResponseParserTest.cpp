#include "generation/ResponseParser.h"

#include "support/FailureNote.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

namespace {

QByteArray encodedPicture(QSize size)
{
    return samplePictures::png(samplePictures::picture(size)).toBase64();
}

/// Parses `body` and keeps which addresses were asked for; each of them gives `resource`.
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

/// A string of JSON.
QByteArray quoted(const QByteArray &text) { return '"' + text + '"'; }

/// An element of the data, with other members before the picture and behind it.
QByteArray element(const QByteArray &base64, const QByteArray &before = {}, const QByteArray &behind = {})
{
    return '{' + before + quoted("b64_json") + ':' + quoted(base64) + behind + '}';
}

QByteArray responseWith(const QByteArray &elements) { return R"({"data":[)" + elements + "]}"; }

const QByteArray address = quoted("url") + ':' + quoted("https://example.org/a?Sig=a%2Fb");
const QByteArrayList badAddresses{quoted({}), quoted("https://example.org/a b"), quoted("http://[oops"), "1",
                                  "null"};
const QByteArray errorWithLongNumber = quoted("error") + ":{" + quoted("message") + ':' +
                                       quoted(QByteArray(1, '\\') + '"' + "1234567890123456789012345") + '}';

/// A picture whose base64 text ends with `padding` signs and holds both of the last two letters of the
/// alphabet. Behind its end a picture file may carry anything.
QByteArray pictureWithPadding(int padding)
{
    QByteArray bytes = samplePictures::png(samplePictures::picture({16, 16}));
    bytes += QByteArray::fromBase64("++//");
    while ((3 - bytes.size() % 3) % 3 != padding) {
        bytes += '\0';
    }
    return bytes;
}

void addRows(const std::initializer_list<std::tuple<const char *, QByteArray, QString>> &rows)
{
    const DataRows<QByteArray, QString> row{"body", "text"};
    for (const auto &[name, body, text] : rows) {
        row(name, body, text);
    }
}

void compareText()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    const Parsed parsed{body};
    QVERIFY(std::holds_alternative<GenError>(parsed.result));
    QCOMPARE(parsed.text(), text);
    QVERIFY(parsed.asked.isEmpty());
}

const auto unparsable = u"无法解析图片数据"_s;
const auto failed = u"图片生成失败"_s;

} // namespace

class ResponseParserTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDecisionsInTheirOrder_data()
    {
        const QByteArray picture = encodedPicture({4, 4});
        const QByteArray good = element(picture);
        addRows({
            {"error with code and message", R"({"error":{"code":"InvalidParameter","message":"bad size"}})",
             u"[InvalidParameter] bad size"_s},
            {"error with a number as code", R"({"error":{"code":400,"message":"x"}})", u"[] x"_s},
            {"empty error", R"({"error":{}})", u"[] 未知错误"_s},
            {"error whose message is no text", R"({"error":{"code":"C","message":7}})", u"[C] 未知错误"_s},
            {"error with empty texts", R"({"error":{"code":"","message":""}})", u"[] "_s},
            {"error wins over data", R"({"data":[)" + good + R"(],"error":{"message":"m"}})", u"[] m"_s},
            {"error text with line breaks", R"({"error":{"message":"一\n二 <b>"}})", u"[] 一\n二 <b>"_s},
            {"error text with escapes", R"({"err\u006fr":{"message":"\u4e00\ud83d\ude00\/\u0000"}})",
             u"[] 一😀/"_s + QChar::Null},
            {"white space everywhere", " {\r\n\t\"error\" : { } } ", u"[] 未知错误"_s},

            {"error of the element", R"({"data":[{"error":{"message":"内容违规","code":"C"}}]})",
             u"内容违规"_s},
            {"empty error of the element", R"({"data":[{"error":{}}]})", failed},
            {"message of the element that is no text", R"({"data":[{"error":{"message":1}}]})", failed},
            {"error of the element wins over its picture", responseWith(element(picture, R"("error":{},)")),
             failed},

            {"element without anything", R"({"data":[{}]})", unparsable},
            {"not base64 and no address", R"({"data":[{"b64_json":"!!!"}]})", unparsable},
            {"base64 of no picture", R"({"data":[{"b64_json":"aGVsbG8="}]})", unparsable},
            {"empty picture", R"({"data":[{"b64_json":""}]})", unparsable},
            {"picture that is a number", R"({"data":[{"b64_json":5}]})", unparsable},
            {"element's error that is no object", R"({"data":[{"error":"x"}]})", unparsable},
            {"truncated picture", responseWith(element(encodedPicture({64, 64}).first(120))), unparsable},
        });
        for (const QByteArray &body :
             {QByteArray{R"({"error":"nope"})"}, QByteArray{R"({"error":[{"message":"m"}]})"},
              QByteArray{R"({"error":null})"}, QByteArray{"{}"}, QByteArray{R"({"created":1})"},
              QByteArray{R"({"data":[]})"}, QByteArray{R"({"data":)" + good + "}"},
              QByteArray{R"({"data":null})"}, QByteArray{R"({"data":"x"})"}, QByteArray{R"({"data":["x"]})"},
              QByteArray{R"({"data":[{"error":{}},1]})"}, QByteArray{R"({"data":[{},null]})"}}) {
            QTest::newRow(body.constData()) << body << u"响应缺少 data 字段："_s + QString::fromUtf8(body);
        }
    }

    void theDecisionsInTheirOrder() { compareText(); }

    void ofDuplicateMembersTheLastCounts_data()
    {
        addRows({
            {"error", R"({"error":{"message":"a"},"error":{"message":"b"}})", u"[] b"_s},
            {"error that is none", R"({"error":{"message":"a"},"error":1,"data":[{"error":{}}]})", failed},
            {"code", R"({"error":{"code":"a","code":"b","message":"m"}})", u"[b] m"_s},
            {"message that is no text", R"({"error":{"message":"a","message":null}})", u"[] 未知错误"_s},
            {"name with an escape", R"({"error":{"message":"a","\u006dessage":"b"}})", u"[] b"_s},
            {"data", R"({"data":[{"error":{"message":"a"}}],"data":[{"error":{}}]})", failed},
            {"data that is none", R"({"data":[{}],"data":{}})",
             uR"(响应缺少 data 字段：{"data":[{}],"data":{}})"_s},
            {"error of the element", R"({"data":[{"error":1,"error":{"message":"a","message":"b"}}]})",
             u"b"_s},
            {"picture", responseWith(element(encodedPicture({4, 4}), {}, R"(,"b64_json":1)")), unparsable},
        });
    }

    void ofDuplicateMembersTheLastCounts() { compareText(); }

    void aPictureInTheResponse()
    {
        const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture({48, 32}));
        QCOMPARE(Parsed{responseWith(element(jpeg.toBase64()))}.pictureSize(), QSize(48, 32));

        const QImage picture = samplePictures::picture({20, 10});
        const Parsed fromPng{responseWith(element(samplePictures::png(picture).toBase64()))};
        QVERIFY(std::get<QImage>(fromPng.result) == picture);
    }

    void onlyTheFirstElementCounts()
    {
        const QByteArray small = element(encodedPicture({4, 4}));
        const QByteArray large = element(encodedPicture({8, 8}));
        QCOMPARE(Parsed{responseWith(small + ',' + large)}.pictureSize(), QSize(4, 4));
        QCOMPARE(Parsed{responseWith(small + R"(,{"error":{}})")}.pictureSize(), QSize(4, 4));
        QCOMPARE(Parsed{responseWith("{}," + small)}.text(), unparsable);
    }

    void aPictureInTheResponseWinsOverItsAddress()
    {
        const Parsed parsed{responseWith(element(encodedPicture({4, 4}), address + ',')),
                            samplePictures::png(samplePictures::picture({8, 8}))};
        QCOMPARE(parsed.pictureSize(), QSize(4, 4));
        QVERIFY(parsed.asked.isEmpty());
    }

    void theAddressIsReadWhenThePictureIsUnusable()
    {
        for (const QByteArray member : {"", R"("b64_json":"a b=",)", R"("b64_json":"aGVsbG8=",)",
                                        R"("b64_json":1,)", R"("b64_json":null,)"}) {
            const FailureNote note{member};
            const Parsed parsed{responseWith('{' + member + address + '}'),
                                samplePictures::png(samplePictures::picture({8, 8}))};
            QCOMPARE(parsed.pictureSize(), QSize(8, 8));
            QCOMPARE(parsed.asked, QStringList{u"https://example.org/a?Sig=a%2Fb"_s});
        }
    }

    void anAddressThatGivesNoPictureFails()
    {
        for (const std::optional<QByteArray> &resource :
             {std::optional<QByteArray>{}, {"<html>404</html>"}, {QByteArray{}}}) {
            const Parsed parsed{responseWith('{' + address + '}'), resource};
            QCOMPARE(parsed.text(), unparsable);
            QCOMPARE(parsed.asked.size(), 1);
        }
    }

    void badAddressesAreNotAskedFor()
    {
        for (const QByteArray &url : badAddresses) {
            const Parsed parsed{R"({"data":[{"url":)" + url + "}]}",
                                samplePictures::png(samplePictures::picture({8, 8}))};
            QCOMPARE(parsed.text(), unparsable);
            QVERIFY2(parsed.asked.isEmpty(), url.constData());
        }
    }

    void numbersOfAnySizeAreRead()
    {
        for (const QByteArray number : {"9223372036854775808", "18446744073709551616", "-9223372036854775809",
                                        "123456789012345678901234567890123456789012345678901234567890",
                                        "0.1234567890123456789012345678901", "1e-400",
                                        "12345678901234567890123456789.5E+0000000000000000000000001"}) {
            const FailureNote note{number};
            const QByteArray member = R"("n":[)" + number + "],";
            QCOMPARE(Parsed{responseWith(element(encodedPicture({4, 4}))).insert(1, member)}.pictureSize(),
                     QSize(4, 4));
            // What looks like a long number in a text stays as it is.
            const Parsed text{'{' + member + errorWithLongNumber + '}'};
            QCOMPARE(text.text(), u"[] \"1234567890123456789012345"_s);
        }
    }

    void aThousandLevelsAreRead()
    {
        const QByteArray nested = QByteArray(1000, '[') + '1' + QByteArray(1000, ']');
        QCOMPARE(Parsed{R"({"a":)" + nested + R"(,"error":{}})"}.text(), u"[] 未知错误"_s);
    }

    void whatTheServiceSends()
    {
        const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture({64, 36})).toBase64();
        QByteArray response = responseWith(element(jpeg, {}, R"(,"size":"64x36")"));
        response.insert(1, R"("model":"doubao-seedream-4-0-250828","created":1757321139,)");
        response.chop(1);
        response += R"(,"usage":{"generated_images":1}})"
                    "\n";
        QCOMPARE(Parsed{response}.pictureSize(), QSize(64, 36));
        const QByteArray refusal =
            R"({"error":{"code":"AuthenticationError","message":)"
            R"("The API key is wrong. Request id: 0217","param":"","type":"Unauthorized"}})";
        QCOMPARE(Parsed{refusal}.text(), u"[AuthenticationError] The API key is wrong. Request id: 0217"_s);
    }

    void base64WithEveryPaddingIsRead()
    {
        for (const int padding : {0, 1, 2}) {
            const QByteArray base64 = pictureWithPadding(padding).toBase64();
            QCOMPARE(base64.count('='), padding);
            QCOMPARE(Parsed{responseWith(element(base64))}.pictureSize(), QSize(16, 16));
        }
    }

    void base64IsReadStrictly_data()
    {
        const DataRows<QByteArray> row{"base64"};
        const QByteArray none = pictureWithPadding(0).toBase64();
        const QByteArray one = pictureWithPadding(1).toBase64();
        const QByteArray two = pictureWithPadding(2).toBase64();
        const auto changed = [&none](int count, const char *to) {
            return QByteArray{none}.replace(80, count, to);
        };
        row("blank before", " " + none);
        row("blank behind", none + " ");
        row("blanks to a full group", none + "    ");
        row("line break inside", QByteArray{none}.insert(76, R"(\n)"));
        row("line breaks to a full group", QByteArray{none}.insert(76, R"(\r\n\r\n)"));
        row("line break at the end", none + R"(\n)");
        row("padding missing", one.chopped(1));
        row("both paddings missing", two.chopped(2));
        row("one of two paddings missing", two.chopped(1));
        row("padding too much", one + "=");
        row("a group of padding", none + "====");
        row("padding in the middle", one + none);
        row("two paddings in the middle", two + none);
        row("one sign short", none.chopped(1));
        row("alphabet for addresses",
            pictureWithPadding(0).toBase64(QByteArray::Base64UrlEncoding | QByteArray::KeepTrailingEquals));
        row("a Chinese character", changed(4, "封面封面"));
        row("a full-width letter", changed(1, "Ａ"));
        row("NUL", changed(1, R"(\u0000)"));
        row("a data address", "data:image/png;base64," + none);
    }

    void base64IsReadStrictly()
    {
        QFETCH(const QByteArray, base64);
        QCOMPARE(Parsed{responseWith(element(base64))}.text(), unparsable);
    }
};

QUILMORA_TEST(ResponseParserTest, runCoreTest)
#include "ResponseParserTest.moc"
