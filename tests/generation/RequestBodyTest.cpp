#include "generation/RequestBody.h"

#include "support/SamplePictures.h"
#include "support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>
#include <random>

using namespace Qt::StringLiterals;
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

QJsonObject encoded(const GenerationRequest &request)
{
    return parsed(encodeRequestBody(request));
}

QByteArray base64In(const QJsonValue &dataUrl)
{
    return dataUrl.toString().sliced(dataUrlStart.size()).toLatin1();
}

QImage pictureIn(const QJsonValue &dataUrl)
{
    return QImage::fromData(QByteArray::fromBase64(base64In(dataUrl)), "png");
}

QImage sample(const QColor &mark)
{
    return samplePictures::inSrgb(samplePictures::picture({40, 30}, mark));
}

} // namespace

class RequestBodyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutPictures()
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
        QTest::addColumn<QList<QImage>>("images");
        QTest::addColumn<QList<QImage>>("expected");
        const QImage red = sample(Qt::red);
        const QImage green = sample(Qt::green);
        const QImage blue = sample(Qt::blue);
        const auto row = [](const char *name, const QList<QImage> &images, const QList<QImage> &expected) {
            QTest::newRow(name) << images << expected;
        };
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
        QList<QImage> sent;
        for (const auto url : image.isArray() ? image.toArray() : QJsonArray{image}) {
            if (url.isString()) {
                QVERIFY(url.toString().startsWith(dataUrlStart));
                sent.append(pictureIn(url));
            }
        }
        QCOMPARE(sent, expected);

        QVERIFY(!bytes.contains(' '));
        QVERIFY(!bytes.contains('\n'));
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
        QCOMPARE(pictureIn(urls[0]), samplePictures::inSrgb(noise));
        QCOMPARE(urls[2], urls[0]);
    }

    void everyPixelFormatKeepsItsPixels_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("opaque") << QImage::Format_RGB32;
        QTest::newRow("with transparency") << QImage::Format_ARGB32;
        QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied;
        QTest::newRow("grey") << QImage::Format_Grayscale8;
        QTest::newRow("palette") << QImage::Format_Indexed8;
        QTest::newRow("16 bits a channel") << QImage::Format_RGBA64;
    }

    void everyPixelFormatKeepsItsPixels()
    {
        QFETCH(const QImage::Format, format);
        QImage picture = sample(Qt::red).convertToFormat(QImage::Format_ARGB32);
        if (format == QImage::Format_ARGB32 || format == QImage::Format_RGBA64) {
            picture.setPixelColor(5, 25, QColor{10, 200, 30, 100});
        }
        picture = picture.convertToFormat(format);
        const QImage read = pictureIn(encoded(requestWith({picture}))[u"image"_s]);
        QCOMPARE(read.convertToFormat(QImage::Format_RGBA64), picture.convertToFormat(QImage::Format_RGBA64));
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
};

QUILMORA_TEST(RequestBodyTest, runCoreTest)
#include "RequestBodyTest.moc"
