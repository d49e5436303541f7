#include "generation/Client.h"
#include "support/TestProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

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

/// What a request looks like to the server.
class RequestOnTheWireTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAPostOfJson()
    {
        const ReceivedRequest request = sent();
        QVERIFY(request.head.startsWith("POST /api/v3/images/generations HTTP/1.1\r\n"));
        QCOMPARE(request.header("Content-Type"), "application/json");
        QCOMPARE(request.headerCount("Content-Type"), 1);
        QCOMPARE(request.header("Content-Length").toLongLong(), request.body.size());
        QCOMPARE(request.headerCount("Authorization"), 1);
        QCOMPARE(request.headerCount("Expect"), 0);
        QVERIFY(request.header("Accept-Encoding").contains("gzip"));
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        QCOMPARE(body.size(), 6);
        QCOMPARE(body[u"size"_s].toString(), u"2848x1600"_s);
        QCOMPARE(body[u"model"_s].toString(), u"model-1"_s);
        QCOMPARE(body.value(u"watermark"_s), QJsonValue{false});
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

    void theKeyIsSentAsStored_data()
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

    void theKeyIsSentAsStored()
    {
        QFETCH(const QString, key);
        const ReceivedRequest request = sent([key](VolcengineConfig &config) { config.apiKey = key; });
        QCOMPARE(request.header("Authorization"), QByteArray{"Bearer " + key.toUtf8()}.trimmed());
        QCOMPARE(request.headerCount("Authorization"), 1);
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

    void picturesArriveInTheirOrder()
    {
        const QImage red = samplePictures::inSrgb(samplePictures::picture({30, 20}, Qt::red));
        const QImage blue = samplePictures::inSrgb(samplePictures::picture({20, 30}, Qt::blue));
        const QJsonArray urls =
            QJsonDocument::fromJson(sent({}, u"p"_s, {red, {}, blue}).body)[u"image"_s].toArray();
        QList<QImage> pictures;
        for (const auto url : urls) {
            const QByteArray base64 = url.toString().section(u',', 1).toLatin1();
            pictures.append(QImage::fromData(QByteArray::fromBase64(base64), "png"));
        }
        QCOMPARE(pictures, QList<QImage>({red, blue}));
    }

    void noProxyIsUsedInTests()
    {
        qputenv("http_proxy", "http://127.0.0.1:1");
        qunsetenv("no_proxy");
        QCOMPARE(sent().method(), "POST");
        qunsetenv("http_proxy");
    }
};

QUILMORA_TEST(RequestOnTheWireTest, runCoreTest)
#include "RequestOnTheWireTest.moc"
