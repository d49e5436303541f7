#include "local_service/http/LocalImageService.h"

#include "model/CoverSize.h"
#include "platform/ImageCodec.h"
#include "support/SamplePictures.h"
#include "tools/ServiceClient.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QJsonArray>
#include <QNetworkInterface>
#include <QNetworkReply>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

bool isJpeg(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xD8\xFF");
}

QJsonObject bodyFor(const QString &member, const QJsonValue &value)
{
    QJsonObject body = ServiceClient::goodBody();
    body.insert(member, value);
    return body;
}

} // namespace

class LocalImageServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySizeOfTheApplicationIsAnswered_data();
    void everySizeOfTheApplicationIsAnswered();
    void theAnswerHasTheProvidersShape();
    void anAddressLeadsToThePicture();
    void theSameRequestGivesTheSameBytes();
    void anotherSceneGivesAnotherPicture();
    void requestsAreCounted();
    void delayedRequestsRunAtOnceAndEndWithTheService();
    void theDelayIsTheLeastTime();
    void aBodyOfSixtyMegabytesIsTaken();
    void aTakenPortIsReported();
    void theAskedPortIsUsed();
    void onlyTheLoopbackAddressAnswers();
    void stoppingTwiceIsHarmless();
    void aClientThatHangsUpDoesNoHarm();
};

void LocalImageServiceTest::everySizeOfTheApplicationIsAnswered_data()
{
    QTest::addColumn<QSize>("size");
    for (const CoverSize &preset : CoverSize::presets()) {
        const QSize size{static_cast<int>(preset.width), static_cast<int>(preset.height)};
        QTest::newRow(preset.name.toUtf8().constData()) << size;
    }
}

void LocalImageServiceTest::everySizeOfTheApplicationIsAnswered()
{
    QFETCH(const QSize, size);
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    const QString text = u"%1x%2"_s.arg(size.width()).arg(size.height());
    QJsonObject body = bodyFor(u"size"_s, text);
    body.insert(u"image"_s, dataUrl(samplePictures::png(samplePictures::picture({300, 400})), u"png"_s));
    const ServiceReply reply = client.post(body);
    QCOMPARE(reply.status, 200);
    QVERIFY(isJpeg(reply.picture()));
    QCOMPARE(imageCodec::decode(reply.picture()).size(), size);
    QCOMPARE(reply.data().value(u"size"_s).toString(), text);
}

void LocalImageServiceTest::theAnswerHasTheProvidersShape()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const QJsonObject json = client.post(ServiceClient::goodBody()).json();
    QCOMPARE(json.keys(), (QStringList{u"created"_s, u"data"_s, u"model"_s, u"usage"_s}));
    QVERIFY(json.value(u"created"_s).toInteger() >= before);
    QVERIFY(json.value(u"created"_s).toInteger() <= QDateTime::currentSecsSinceEpoch());
    QCOMPARE(json.value(u"model"_s).toString(), u"doubao-seedream-4-0-250828"_s);
    QCOMPARE(json.value(u"usage"_s).toObject().value(u"generated_images"_s).toInt(), 1);
    QCOMPARE(json.value(u"data"_s).toArray().size(), 1);
    QCOMPARE(json.value(u"data"_s).toArray().at(0).toObject().keys(),
             (QStringList{u"b64_json"_s, u"size"_s}));
}

void LocalImageServiceTest::anAddressLeadsToThePicture()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    const QByteArray direct = client.post(ServiceClient::goodBody()).picture();
    const ServiceReply reply = client.post(bodyFor(u"response_format"_s, u"url"_s));
    QCOMPARE(reply.data().keys(), (QStringList{u"size"_s, u"url"_s}));
    const QUrl url{reply.data().value(u"url"_s).toString()};
    QCOMPARE(url.host(), u"127.0.0.1"_s);
    QCOMPARE(url.port(), int{service.port()});
    QVERIFY(url.path().startsWith(u"/pictures/"_s) && url.path().endsWith(u".jpg"_s));
    const ServiceReply picture = client.get(url);
    QCOMPARE(picture.status, 200);
    QCOMPARE(picture.contentType, QByteArray{"image/jpeg"});
    QCOMPARE(picture.body, direct);
    QCOMPARE(imageCodec::decode(picture.body).size(), QSize(1280, 720));
}

void LocalImageServiceTest::theSameRequestGivesTheSameBytes()
{
    QJsonObject body = bodyFor(u"prompt"_s, u"封面主标题文字：「秘密」 背景场景：未来科技。"_s);
    body.insert(u"image"_s, dataUrl(samplePictures::png(samplePictures::picture({300, 400})), u"png"_s));
    QByteArray first;
    for (int run = 0; run < 2; ++run) {
        LocalImageService service{{.delay = 0ms}};
        QVERIFY(service.start() != 0);
        ServiceClient client{service.endpoint()};
        const QByteArray picture = client.post(body).picture();
        QVERIFY(!picture.isEmpty());
        first = run == 0 ? picture : first;
        QCOMPARE(picture, first);
    }
}

void LocalImageServiceTest::anotherSceneGivesAnotherPicture()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    const QByteArray sea = client.post(bodyFor(u"prompt"_s, u"背景场景：海边。"_s)).picture();
    const QByteArray city = client.post(bodyFor(u"prompt"_s, u"背景场景：城市夜景。"_s)).picture();
    QVERIFY(isJpeg(sea) && isJpeg(city));
    QVERIFY(sea != city);
}

void LocalImageServiceTest::requestsAreCounted()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    QUrl stats = service.endpoint();
    stats.setPath(u"/stats"_s);
    QCOMPARE(client.get(stats).json().value(u"requests"_s).toInt(-1), 0);
    QCOMPARE(client.post(ServiceClient::goodBody()).status, 200);
    QCOMPARE(client.post(QJsonObject{}).status, 400);
    client.key = "Bearer other";
    QCOMPARE(client.post(ServiceClient::goodBody()).status, 401);
    QCOMPARE(service.requestCount(), 3);
    QCOMPARE(service.answeredCount(), 1);
    const QJsonObject counts = client.get(stats).json();
    QCOMPARE(counts.value(u"requests"_s).toInt(), 3);
    QCOMPARE(counts.value(u"answered"_s).toInt(), 1);
    QCOMPARE(counts.value(u"under_way"_s).toInt(-1), 0);
    QCOMPARE(counts.value(u"most_at_once"_s).toInt(), 1);
}

void LocalImageServiceTest::delayedRequestsRunAtOnceAndEndWithTheService()
{
    // As many as one client keeps connections to one host.
    constexpr int requests = 6;
    LocalImageService service{{.delay = 1h}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    std::vector<std::unique_ptr<QNetworkReply>> replies;
    replies.reserve(requests);
    for (int i = 0; i < requests; ++i) {
        replies.push_back(client.postLater(ServiceClient::goodBody()));
    }
    QTRY_COMPARE_WITH_TIMEOUT(service.underWayCount(), requests, 30'000);
    service.stop();
    for (const auto &reply : replies) {
        QTRY_VERIFY(reply->isFinished());
        const ServiceReply answer = ServiceClient::answerOf(*reply);
        QCOMPARE(answer.status, 503);
        QCOMPARE(answer.error(u"code"_s), u"ServiceUnavailable"_s);
    }
    QCOMPARE(service.mostAtOnce(), requests);
    QCOMPARE(service.underWayCount(), 0);
    QCOMPARE(service.answeredCount(), 0);
}

void LocalImageServiceTest::theDelayIsTheLeastTime()
{
    LocalImageService service{{.delay = 700ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(client.post(ServiceClient::goodBody()).status, 200);
    QVERIFY(timer.elapsed() >= 700);
}

void LocalImageServiceTest::aBodyOfSixtyMegabytesIsTaken()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    ServiceClient client{service.endpoint()};
    const QString url = dataUrl(samplePictures::pngOfSize(45'000'000), u"png"_s);
    QCOMPARE(client.post(bodyFor(u"image"_s, url)).status, 200);
}

void LocalImageServiceTest::aTakenPortIsReported()
{
    LocalImageService first{{.delay = 0ms}};
    const quint16 port = first.start();
    QVERIFY(port != 0);
    LocalImageService second{{.port = port, .delay = 0ms}};
    QCOMPARE(second.start(), quint16{0});
}

void LocalImageServiceTest::theAskedPortIsUsed()
{
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    const quint16 port = probe.serverPort();
    probe.close();
    LocalImageService service{{.port = port, .delay = 0ms}};
    QCOMPARE(service.start(), port);
    QCOMPARE(service.endpoint(), QUrl{u"http://127.0.0.1:%1/api/v3/images/generations"_s.arg(port)});
    ServiceClient client{service.endpoint()};
    QCOMPARE(client.post(ServiceClient::goodBody()).status, 200);
}

void LocalImageServiceTest::onlyTheLoopbackAddressAnswers()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
    const auto outside = std::find_if(addresses.begin(), addresses.end(), [](const QHostAddress &address) {
        return !address.isLoopback() && address.protocol() == QAbstractSocket::IPv4Protocol;
    });
    if (outside == addresses.end()) {
        QSKIP("this machine has no other address");
    }
    QTcpSocket socket;
    socket.connectToHost(*outside, service.port());
    QVERIFY(!socket.waitForConnected(5000));
    QCOMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
}

void LocalImageServiceTest::stoppingTwiceIsHarmless()
{
    LocalImageService service;
    service.stop();
    LocalImageService other{{.delay = 0ms}};
    QVERIFY(other.start() != 0);
    other.stop();
    other.stop();
}

void LocalImageServiceTest::aClientThatHangsUpDoesNoHarm()
{
    LocalImageService service{{.delay = 0ms}};
    QVERIFY(service.start() != 0);
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, service.port());
        QVERIFY(socket.waitForConnected());
        socket.write(
            "POST /api/v3/images/generations HTTP/1.1\r\nHost: x\r\nContent-Length: 1000000\r\n\r\n{");
        QVERIFY(socket.waitForBytesWritten());
        socket.abort();
    }
    ServiceClient client{service.endpoint()};
    std::unique_ptr<QNetworkReply> dropped = client.postLater(ServiceClient::goodBody());
    QTRY_VERIFY(service.requestCount() > 0);
    dropped.reset();
    QCOMPARE(client.post(ServiceClient::goodBody()).status, 200);
}

QTEST_MAIN(LocalImageServiceTest)

#include "LocalImageServiceTest.moc"
