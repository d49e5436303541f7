#include "generation/Client.h"
#include "generation/GenerationRequest.h"
#include "generation/HttpSession.h"
#include "support/SamplePictures.h"

#include <QJsonObject>

#include <functional>
#include <limits>
#include <random>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr QStringView dataUrlStart = u"data:image/png;base64,";

GenerationRequest requestWith(const QList<QImage> &images)
{
    return {u"提示"_s, 1080, 1920, images, u"model-1"_s};
}

QJsonObject parsed(const QByteArray &body)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    return error.error == QJsonParseError::NoError ? document.object() : QJsonObject{};
}

QJsonObject encoded(const GenerationRequest &request) { return parsed(encodeRequestBody(request)); }

QByteArray base64In(const QJsonValue &dataUrl)
{
    return dataUrl.toString().sliced(dataUrlStart.size()).toLatin1();
}

QImage sample(const QColor &mark) { return samplePictures::inSrgb(samplePictures::picture({40, 30}, mark)); }

/// Sends one request, and gives it as the server received it.
ReceivedRequest sent(const std::function<void(VolcengineConfig &)> &change = {},
                     const QString &prompt = u"p"_s, const QList<QImage> &images = {})
{
    const ScriptedHttpServer server{pictureResponse()};
    VolcengineConfig config = configFor(server);
    if (change) {
        change(config);
    }
    const Outcome outcome = Client{}.generate(config, prompt, images);
    return outcome == Outcome::picture() ? server.requests().constLast() : ReceivedRequest{};
}

} // namespace

/// The body of a request, how it is read, and what the whole looks like to the server.
class RequestTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBodyWithoutPictures()
    {
        const QJsonObject expected{
            {u"model"_s, u"model-1"_s},  {u"prompt"_s, u"提示"_s},
            {u"size"_s, u"1080x1920"_s}, {u"response_format"_s, u"b64_json"_s},
            {u"watermark"_s, false},     {u"sequential_image_generation"_s, u"disabled"_s},
        };
        QCOMPARE(encoded(requestWith({})), expected);
    }

    void sizeIsPlainDecimals()
    {
        const auto size = [](qint64 width, qint64 height) {
            return encoded({u"p"_s, width, height, {}, u"m"_s})[u"size"_s].toString();
        };
        QCOMPARE(size(2848, 1600), u"2848x1600"_s);
        QCOMPARE(size(0, -1), u"0x-1"_s);
        QCOMPARE(size(std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()),
                 u"9223372036854775807x-9223372036854775808"_s);
    }

    void pictures_data()
    {
        const DataRows<QList<QImage>, QList<QImage>> row{"images", "expected"};
        const QImage red = sample(Qt::red);
        const QImage green = sample(Qt::green);
        const QImage blue = sample(Qt::blue);
        row("none", {}, {});
        row("one", {red}, {red});
        row("two", {red, blue}, {red, blue});
        row("a skipped one and another", {{}, blue}, {blue});
        row("skipped ones", {{}, {}}, {});
        row("skipped ones between others", {red, {}, green, {}, blue}, {red, green, blue});
    }

    /// One is a string, several are an array in their order.
    void pictures()
    {
        QFETCH(const QList<QImage>, images);
        QFETCH(const QList<QImage>, expected);
        const QByteArray bytes = encodeRequestBody(requestWith(images));
        const QJsonObject body = parsed(bytes);
        const QJsonValue image = body[u"image"_s];
        QCOMPARE(body.size(), expected.isEmpty() ? 6 : 7);
        QCOMPARE(body.contains(u"image"_s), !expected.isEmpty());
        QCOMPARE(image.isString(), expected.size() == 1);
        QCOMPARE(image.isArray(), expected.size() > 1);
        QCOMPARE(bytes.count("\"data:image/png;base64,"), expected.size());
        QCOMPARE(picturesIn(image), expected);

        QVERIFY(!bytes.contains(' ') && !bytes.contains('\n'));
        QVERIFY(bytes.contains(R"("watermark":false)"));
        QCOMPARE(QJsonDocument{body}.toJson(QJsonDocument::Compact).size(), bytes.size());
    }

    void thePictureIsOneLineOfPaddedBase64()
    {
        // Three sizes in a row have at least one length that needs padding.
        bool padded = false;
        for (const int width : {31, 32, 33, 34, 35}) {
            const QImage picture = samplePictures::picture({width, 20});
            const QByteArray digits = base64In(encoded(requestWith({picture}))[u"image"_s]);
            QCOMPARE(digits.size() % 4, 0);
            QVERIFY(!digits.contains('\n'));
            QVERIFY(QByteArray::fromBase64Encoding(digits, QByteArray::AbortOnBase64DecodingErrors));
            padded = padded || digits.endsWith('=');
        }
        QVERIFY(padded);
    }

    void largePicturesComeInOnePiece()
    {
        // Noise, so that the file is large: far more than what is turned into base64 at a time.
        QImage noise{400, 300, QImage::Format_RGB32};
        std::mt19937 random{5};
        for (int y = 0; y < noise.height(); ++y) {
            for (int x = 0; x < noise.width(); ++x) {
                noise.setPixel(x, y, static_cast<QRgb>(random()) | 0xff000000U);
            }
        }
        const QJsonArray urls = encoded(requestWith({noise, sample(Qt::red), noise}))[u"image"_s].toArray();
        QCOMPARE(urls.size(), 3);
        for (const auto url : urls) {
            QVERIFY(QByteArray::fromBase64Encoding(base64In(url), QByteArray::AbortOnBase64DecodingErrors));
        }
        QVERIFY(urls[0].toString().size() > 400'000);
        QCOMPARE(picturesIn(urls[0]), QList{samplePictures::inSrgb(noise)});
        QCOMPARE(urls[2], urls[0]);
    }

    void everyPixelFormatKeepsItsPixels()
    {
        // Opaque, with transparency, of gray, with a palette, and deep.
        for (const QImage::Format format :
             {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
              QImage::Format_Grayscale8, QImage::Format_Indexed8, QImage::Format_RGBA64}) {
            QImage picture = sample(Qt::red).convertToFormat(QImage::Format_ARGB32);
            if (format == QImage::Format_ARGB32 || format == QImage::Format_RGBA64) {
                picture.setPixelColor(5, 25, QColor{10, 200, 30, 100});
            }
            picture = picture.convertToFormat(format);
            const QImage read = picturesIn(encoded(requestWith({picture}))[u"image"_s]).constFirst();
            QVERIFY2(read.convertToFormat(QImage::Format_RGBA64) ==
                         picture.convertToFormat(QImage::Format_RGBA64),
                     qPrintable(QString::number(format)));
        }
    }

    void textsReadBackTheSame_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << u""_s;
        QTest::newRow("Chinese") << u"生成一张视频封面图。"_s;
        QTest::newRow("quotes and backslashes") << u"「a」 \"a\" \\ \\n 'b' / </script>"_s;
        QTest::newRow("line breaks and control characters") << u"a\r\nb\tc\u0001\u001f\u007f\u2028"_s;
        QTest::newRow("emoji") << u"👩‍👩‍👧‍👦 é é 🇨🇳 "_s;
        QTest::newRow("NUL") << QString{u"a"_s + QChar{u'\0'} + u'b'};
        QTest::newRow("10,000 characters") << u"长标题\"换行\n"_s.repeated(1429).first(10'000);
    }

    void textsReadBackTheSame()
    {
        QFETCH(const QString, text);
        for (const QList<QImage> &images : {QList<QImage>{}, {sample(Qt::red)}}) {
            const QJsonObject body = encoded({text, 1, 2, images, text});
            QCOMPARE(body[u"prompt"_s].toString(), text);
            QCOMPARE(body[u"model"_s].toString(), text);
        }
    }

    void theBodyGivesItsBytesInPieces()
    {
        NonRewindableBody upload{"0123456789"};
        QVERIFY(!upload.isSequential());
        QCOMPARE(upload.size(), 10);
        QCOMPARE(upload.read(4), "0123");
        QCOMPARE(upload.read(4), "4567");
        QVERIFY(!upload.atEnd());
        QCOMPARE(upload.read(4), "89");
        QVERIFY(upload.atEnd());
        QCOMPARE(upload.read(4), QByteArray{});

        NonRewindableBody empty{{}};
        QCOMPARE(empty.size(), 0);
        QVERIFY(empty.atEnd());
        QCOMPARE(empty.readAll(), QByteArray{});
    }

    void theBodyCannotBeRewoundNorWritten()
    {
        NonRewindableBody upload{"body"};
        QCOMPARE(upload.read(2), "bo");
        QVERIFY(!upload.reset());
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (quilmora::NonRewindableBody): ReadOnly device");
        QCOMPARE(upload.write("x"), -1);
        QCOMPARE(upload.readAll(), "dy");
        QVERIFY(!upload.reset());
    }

    void theRequestIsAPostOfJson()
    {
        const ReceivedRequest request = sent();
        QVERIFY(request.head.startsWith("POST /api/v3/images/generations HTTP/1.1\r\n"));
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.headerCount("Content-Type"), 1);
        QCOMPARE(request.header("Content-Length").toLongLong(), request.body.size());
        QCOMPARE(request.headerCount("Authorization"), 1);
        QCOMPARE(request.headerCount("Expect"), 0);
        QVERIFY(request.header("Accept-Encoding").contains("gzip"));
        QCOMPARE(request.body, encodeRequestBody({u"p"_s, 2848, 1600, {}, u"model-1"_s}));
    }

    void pathAndQueryAreAsConfigured()
    {
        const auto pathOf = [](const QString &path) {
            const auto replacePath = [path](VolcengineConfig &config) {
                config.apiURL = QUrl{config.apiURL}.toString(QUrl::RemovePath) + path;
            };
            return sent(replacePath).path();
        };
        QCOMPARE(pathOf(u"/a%2Fb/c?d=e%20f&g=1+2"_s), "/a%2Fb/c?d=e%20f&g=1+2");
        QCOMPARE(pathOf({}), "/");
    }

    void theKeyIsSentAsStored()
    {
        for (const QString &key :
             {u"0b1c-2d3e"_s, u" "_s, u"  key\t "_s, u"Bearer key"_s, u"密钥"_s, u"ключ é 👩‍💻"_s,
              u"a: \"b\"; c='d'\\"_s, u"k"_s.repeated(6000)}) {
            const ReceivedRequest request = sent([key](VolcengineConfig &config) { config.apiKey = key; });
            QCOMPARE(request.header("Authorization"), QByteArray{"Bearer " + key.toUtf8()}.trimmed());
            QCOMPARE(request.headerCount("Authorization"), 1);
        }
    }

    void credentialsInTheAddressDoNotReplaceTheKey()
    {
        const ReceivedRequest request = sent([](VolcengineConfig &config) {
            config.apiURL.replace(u"http://"_s, u"http://somebody:password@"_s);
        });
        QCOMPARE(request.header("Authorization"), "Bearer secret-key");
        QVERIFY(!request.head.contains("somebody"));
        QVERIFY(!request.head.contains(QByteArray{"somebody:password"}.toBase64()));
    }

    void aLargeBodyArrivesWhole()
    {
        const QString prompt = u"长标题6789"_s.repeated(1'000'000);
        const ReceivedRequest request = sent({}, prompt);
        QVERIFY(request.body.size() > 10'000'000);
        QCOMPARE(QJsonDocument::fromJson(request.body)[u"prompt"_s].toString(), prompt);
    }
};

QUILMORA_TEST(RequestTest, runCoreTest)
#include "RequestTest.moc"
