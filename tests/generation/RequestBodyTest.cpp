#include "generation/RequestBody.h"

#include "support/SamplePictures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>
#include <random>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

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

QImage pictureIn(const QJsonValue &dataUrl)
{
    const QByteArray png = QByteArray::fromBase64(dataUrl.toString().sliced(dataUrlStart.size()).toLatin1());
    return QImage::fromData(png, "png");
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
    void noPicturesGiveSixMembersAndNoImage();
    void watermarkIsFalseInEveryRequest();
    void sizeIsPlainDecimals_data();
    void sizeIsPlainDecimals();
    void theBodyIsCompact();
    void onePictureIsAString();
    void twoPicturesAreAnArrayInTheirOrder();
    void aSkippedPictureLeavesAString();
    void skippedPicturesOnlyLeaveNoImage();
    void skippedPicturesBetweenOthers();
    void thePictureIsOneLineOfPaddedBase64();
    void largePicturesComeInOnePiece();
    void everyPixelFormatKeepsItsPixels_data();
    void everyPixelFormatKeepsItsPixels();
    void textsReadBackTheSame_data();
    void textsReadBackTheSame();
};

void RequestBodyTest::noPicturesGiveSixMembersAndNoImage()
{
    const QJsonObject expected{
        {u"model"_s, u"model-1"_s},  {u"prompt"_s, u"提示"_s},
        {u"size"_s, u"1080x1920"_s}, {u"response_format"_s, u"b64_json"_s},
        {u"watermark"_s, false},     {u"sequential_image_generation"_s, u"disabled"_s},
    };
    QCOMPARE(encoded(requestWith({})), expected);
}

void RequestBodyTest::watermarkIsFalseInEveryRequest()
{
    for (const QList<QImage> &images :
         {QList<QImage>{}, {sample(Qt::red)}, {sample(Qt::red), sample(Qt::blue)}}) {
        QCOMPARE(encoded(requestWith(images)).value(u"watermark"_s), QJsonValue{false});
    }
}

void RequestBodyTest::sizeIsPlainDecimals_data()
{
    QTest::addColumn<qint64>("width");
    QTest::addColumn<qint64>("height");
    QTest::addColumn<QString>("text");
    QTest::newRow("preset") << qint64{2848} << qint64{1600} << u"2848x1600"_s;
    QTest::newRow("zero and negative") << qint64{0} << qint64{-1} << u"0x-1"_s;
    QTest::newRow("64 bits") << std::numeric_limits<qint64>::max() << std::numeric_limits<qint64>::min()
                             << u"9223372036854775807x-9223372036854775808"_s;
}

void RequestBodyTest::sizeIsPlainDecimals()
{
    QFETCH(const qint64, width);
    QFETCH(const qint64, height);
    QFETCH(const QString, text);
    QCOMPARE(encoded({u"p"_s, width, height, {}, u"m"_s})[u"size"_s].toString(), text);
}

void RequestBodyTest::theBodyIsCompact()
{
    for (const QList<QImage> &images :
         {QList<QImage>{}, {sample(Qt::red)}, {sample(Qt::red), sample(Qt::blue)}}) {
        const QByteArray body = encodeRequestBody(requestWith(images));
        QVERIFY(!body.contains(' '));
        QVERIFY(!body.contains('\n'));
        QVERIFY(body.contains(R"("watermark":false)"));
        QCOMPARE(QJsonDocument{parsed(body)}.toJson(QJsonDocument::Compact).size(), body.size());
    }
}

void RequestBodyTest::onePictureIsAString()
{
    const QJsonObject body = encoded(requestWith({sample(Qt::red)}));
    QCOMPARE(body.size(), 7);
    QVERIFY(body[u"image"_s].isString());
    QVERIFY(body[u"image"_s].toString().startsWith(dataUrlStart));
    QCOMPARE(pictureIn(body[u"image"_s]), sample(Qt::red));
}

void RequestBodyTest::twoPicturesAreAnArrayInTheirOrder()
{
    const QJsonObject body = encoded(requestWith({sample(Qt::red), sample(Qt::blue)}));
    const QJsonArray images = body[u"image"_s].toArray();
    QCOMPARE(body.size(), 7);
    QCOMPARE(images.size(), 2);
    QCOMPARE(pictureIn(images[0]), sample(Qt::red));
    QCOMPARE(pictureIn(images[1]), sample(Qt::blue));
}

void RequestBodyTest::aSkippedPictureLeavesAString()
{
    const QJsonValue image = encoded(requestWith({QImage{}, sample(Qt::blue)}))[u"image"_s];
    QVERIFY(image.isString());
    QCOMPARE(pictureIn(image), sample(Qt::blue));
}

void RequestBodyTest::skippedPicturesOnlyLeaveNoImage()
{
    const QJsonObject body = encoded(requestWith({QImage{}, QImage{}}));
    QCOMPARE(body.size(), 6);
    QVERIFY(!body.contains(u"image"_s));
}

void RequestBodyTest::skippedPicturesBetweenOthers()
{
    const QList<QImage> images{sample(Qt::red), {}, sample(Qt::green), {}, sample(Qt::blue)};
    const QJsonArray array = encoded(requestWith(images))[u"image"_s].toArray();
    QCOMPARE(array.size(), 3);
    QCOMPARE(pictureIn(array[1]), sample(Qt::green));
    QCOMPARE(pictureIn(array[2]), sample(Qt::blue));
}

void RequestBodyTest::thePictureIsOneLineOfPaddedBase64()
{
    // Three sizes in a row have at least one length that needs padding.
    bool padded = false;
    for (const int width : {31, 32, 33, 34, 35}) {
        const QImage picture = samplePictures::picture({width, 20});
        const QString url = encoded(requestWith({picture}))[u"image"_s].toString();
        const QByteArray digits = url.sliced(dataUrlStart.size()).toLatin1();
        QCOMPARE(digits.size() % 4, 0);
        QVERIFY(!digits.contains('\n'));
        QVERIFY(QByteArray::fromBase64Encoding(digits, QByteArray::AbortOnBase64DecodingErrors));
        padded = padded || digits.endsWith('=');
    }
    QVERIFY(padded);
}

void RequestBodyTest::largePicturesComeInOnePiece()
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
        const QByteArray digits = url.toString().sliced(dataUrlStart.size()).toLatin1();
        QVERIFY(QByteArray::fromBase64Encoding(digits, QByteArray::AbortOnBase64DecodingErrors));
    }
    QVERIFY(urls[0].toString().size() > 400'000);
    QCOMPARE(pictureIn(urls[0]), samplePictures::inSrgb(noise));
    QCOMPARE(urls[2], urls[0]);
}

void RequestBodyTest::everyPixelFormatKeepsItsPixels_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("opaque") << QImage::Format_RGB32;
    QTest::newRow("with transparency") << QImage::Format_ARGB32;
    QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("grey") << QImage::Format_Grayscale8;
    QTest::newRow("palette") << QImage::Format_Indexed8;
    QTest::newRow("16 bits a channel") << QImage::Format_RGBA64;
}

void RequestBodyTest::everyPixelFormatKeepsItsPixels()
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

void RequestBodyTest::textsReadBackTheSame_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("quotes and backslashes") << u"\"a\" \\ \\n 'b' / </script>"_s;
    QTest::newRow("line breaks and control characters") << u"a\r\nb\tc\u0001\u001f\u007f\u2028"_s;
    QTest::newRow("emoji") << u"👩‍👩‍👧‍👦 é é 🇨🇳 "_s;
    QTest::newRow("NUL") << QString{u"a"_s + QChar{u'\0'} + u'b'};
    QTest::newRow("10,000 characters") << u"长标题\"换行\n"_s.repeated(1429).first(10'000);
}

void RequestBodyTest::textsReadBackTheSame()
{
    QFETCH(const QString, text);
    for (const QList<QImage> &images : {QList<QImage>{}, {sample(Qt::red)}}) {
        const QJsonObject body = encoded({text, 1, 2, images, text});
        QCOMPARE(body[u"prompt"_s].toString(), text);
        QCOMPARE(body[u"model"_s].toString(), text);
    }
}

QTEST_GUILESS_MAIN(RequestBodyTest)
#include "RequestBodyTest.moc"
