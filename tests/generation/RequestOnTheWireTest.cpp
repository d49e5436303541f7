#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// Sends one request and gives what the server received.
class Sent final
{
public:
    ReceivedRequest request(const QString &key, const QString &prompt = u"p"_s,
                            const QList<QImage> &images = {})
    {
        VolcengineConfig config = configFor(server);
        config.apiKey = key;
        return request(config, prompt, images);
    }

    ReceivedRequest request(const VolcengineConfig &config, const QString &prompt = u"p"_s,
                            const QList<QImage> &images = {})
    {
        Results results;
        service.generateImage(prompt, 2848, 1600, images, config, results.collect());
        const bool answered = QTest::qWaitFor([&results] { return results.all.size() == 1; });
        return answered && results.isPicture() ? server.requests().constLast() : ReceivedRequest{};
    }

    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};

private:
    ImageGeneratorService service;
};

} // namespace

/// What a request looks like to the server.
class RequestOnTheWireTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAPostOfJson();
    void pathAndQueryAreAsConfigured();
    void theKeyIsSentAsStored_data();
    void theKeyIsSentAsStored();
    void credentialsInTheAddressDoNotReplaceTheKey();
    void thePromptArrivesUnchanged_data();
    void thePromptArrivesUnchanged();
    void picturesArriveInTheirOrder();
    void aLargeBodyArrivesWhole();
    void noProxyIsAskedInTests();
};

void RequestOnTheWireTest::isAPostOfJson()
{
    Sent sent;
    const ReceivedRequest request = sent.request(u"secret"_s);
    QCOMPARE(request.method(), "POST");
    QVERIFY(request.head.startsWith("POST /api/v3/images/generations HTTP/1.1\r\n"));
    QCOMPARE(request.header("Content-Type"), "application/json");
    QCOMPARE(request.headerCount("Content-Type"), 1);
    QCOMPARE(request.header("Content-Length").toLongLong(), request.body.size());
    QCOMPARE(request.headerCount("Authorization"), 1);
    QCOMPARE(request.headerCount("Expect"), 0);
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QCOMPARE(body.size(), 6);
    QCOMPARE(body[u"size"_s].toString(), u"2848x1600"_s);
    QCOMPARE(body[u"model"_s].toString(), u"model-1"_s);
    QCOMPARE(body.value(u"watermark"_s), QJsonValue{false});
}

void RequestOnTheWireTest::pathAndQueryAreAsConfigured()
{
    Sent sent;
    VolcengineConfig config = configFor(sent.server);
    config.apiURL = sent.server.url(u"/v%33/x"_s).toString(QUrl::RemovePath) + u"/a%2Fb/c?d=e%20f&g=1+2"_s;
    QCOMPARE(sent.request(config).path(), "/a%2Fb/c?d=e%20f&g=1+2");
    config.apiURL = sent.server.url().toString(QUrl::RemovePath);
    QCOMPARE(sent.request(config).path(), "/");
}

void RequestOnTheWireTest::theKeyIsSentAsStored_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("plain") << u"0b1c-2d3e"_s;
    QTest::newRow("one blank") << u" "_s;
    QTest::newRow("blanks around") << u"  key\t "_s;
    QTest::newRow("with the scheme typed too") << u"Bearer key"_s;
    QTest::newRow("Chinese") << u"密钥"_s;
    QTest::newRow("emoji and accents") << u"ключ é 👩‍💻"_s;
    QTest::newRow("colons and quotes") << u"a: \"b\"; c='d'\\"_s;
    QTest::newRow("long") << u"k"_s.repeated(6000);
}

void RequestOnTheWireTest::theKeyIsSentAsStored()
{
    QFETCH(const QString, key);
    Sent sent;
    const ReceivedRequest request = sent.request(key);
    QCOMPARE(request.header("Authorization"), QByteArray{"Bearer " + key.toUtf8()}.trimmed());
    QCOMPARE(request.headerCount("Authorization"), 1);
}

void RequestOnTheWireTest::credentialsInTheAddressDoNotReplaceTheKey()
{
    Sent sent;
    VolcengineConfig config = configFor(sent.server);
    config.apiURL.replace(u"http://"_s, u"http://somebody:password@"_s);
    const ReceivedRequest request = sent.request(config);
    QCOMPARE(request.header("Authorization"), "Bearer secret-key");
    QVERIFY(!request.head.contains("somebody"));
    QVERIFY(!request.head.contains(QByteArray{"somebody:password"}.toBase64()));
}

void RequestOnTheWireTest::thePromptArrivesUnchanged_data()
{
    QTest::addColumn<QString>("prompt");
    QTest::newRow("Chinese") << u"生成一张视频封面图。"_s;
    QTest::newRow("quotes and line breaks") << u"「a」 \"b\" 'c'\r\n\t\\ "_s;
    QTest::newRow("emoji") << u"👩‍👩‍👧‍👦 🇨🇳 e\u0301"_s;
    QTest::newRow("10,000 characters") << u"长标题"_s.repeated(3334).first(10'000);
}

void RequestOnTheWireTest::thePromptArrivesUnchanged()
{
    QFETCH(const QString, prompt);
    Sent sent;
    const ReceivedRequest request = sent.request(u"k"_s, prompt);
    QCOMPARE(QJsonDocument::fromJson(request.body)[u"prompt"_s].toString(), prompt);
}

void RequestOnTheWireTest::picturesArriveInTheirOrder()
{
    Sent sent;
    const QImage red = samplePictures::inSrgb(samplePictures::picture({30, 20}, Qt::red));
    const QImage blue = samplePictures::inSrgb(samplePictures::picture({20, 30}, Qt::blue));
    const auto pictureIn = [](const QJsonValue &url) {
        return QImage::fromData(QByteArray::fromBase64(url.toString().section(u',', 1).toLatin1()), "png");
    };

    const QJsonValue two =
        QJsonDocument::fromJson(sent.request(u"k"_s, u"p"_s, {red, {}, blue}).body)[u"image"_s];
    QCOMPARE(two.toArray().size(), 2);
    QCOMPARE(pictureIn(two.toArray()[0]), red);
    QCOMPARE(pictureIn(two.toArray()[1]), blue);

    const QJsonValue one = QJsonDocument::fromJson(sent.request(u"k"_s, u"p"_s, {{}, blue}).body)[u"image"_s];
    QVERIFY(one.isString());
    QCOMPARE(pictureIn(one), blue);
}

void RequestOnTheWireTest::aLargeBodyArrivesWhole()
{
    Sent sent;
    const QString prompt = u"0123456789"_s.repeated(1'000'000);
    const ReceivedRequest request = sent.request(u"k"_s, prompt);
    QVERIFY(request.body.size() > 10'000'000);
    QCOMPARE(QJsonDocument::fromJson(request.body)[u"prompt"_s].toString(), prompt);
}

void RequestOnTheWireTest::noProxyIsAskedInTests()
{
    qputenv("http_proxy", "http://127.0.0.1:1");
    qunsetenv("no_proxy");
    Sent sent;
    QCOMPARE(sent.request(u"k"_s).method(), "POST");
    qunsetenv("http_proxy");
}

QTEST_GUILESS_MAIN(RequestOnTheWireTest)
#include "RequestOnTheWireTest.moc"
