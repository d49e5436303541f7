#include "local_service/http/LocalImageService.h"

#include "imaging/ImageCodec.h"
#include "model/CoverSize.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"
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
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace quilmora::localservice;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

QJsonObject bodyFor(const QString &member, const QJsonValue &value)
{
    QJsonObject body = ServiceClient::goodBody();
    body.insert(member, value);
    return body;
}

QString faceUrl()
{
    return dataUrl(samplePictures::png(samplePictures::picture({300, 400})), u"png"_s);
}

} // namespace

class LocalImageServiceTest final : public QObject
{
    Q_OBJECT

    /// Puts another service into the place of the one that every test begins with.
    void start(const LocalServiceOptions &options);

    std::optional<LocalImageService> m_service;
    std::optional<ServiceClient> m_client;

private Q_SLOTS:
    void init() { start({.delay = 0ms}); }
    void everySizeOfTheApplicationIsAnswered_data();
    void everySizeOfTheApplicationIsAnswered();
    void theAnswerHasTheProvidersShape();
    void anAddressLeadsToThePicture();
    void onlyTheSameRequestGivesTheSameBytes();
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

void LocalImageServiceTest::start(const LocalServiceOptions &options)
{
    m_client.reset();
    m_service.emplace(options);
    QVERIFY(m_service->start() != 0);
    m_client.emplace(m_service->endpoint());
}

void LocalImageServiceTest::everySizeOfTheApplicationIsAnswered_data()
{
    QTest::addColumn<QSize>("size");
    for (const quilmora::CoverSize &preset : quilmora::CoverSize::presets()) {
        const QSize size{static_cast<int>(preset.width), static_cast<int>(preset.height)};
        QTest::newRow(preset.name.toUtf8().constData()) << size;
    }
}

void LocalImageServiceTest::everySizeOfTheApplicationIsAnswered()
{
    QFETCH(const QSize, size);
    const QString text = u"%1x%2"_s.arg(size.width()).arg(size.height());
    QJsonObject body = bodyFor(u"size"_s, text);
    body.insert(u"image"_s, faceUrl());
    const ServiceReply reply = m_client->post(body);
    QCOMPARE(reply.status, 200);
    QVERIFY(reply.picture().startsWith("\xFF\xD8\xFF"));
    QCOMPARE(quilmora::imageCodec::decode(reply.picture()).size(), size);
    QCOMPARE(reply.data().value(u"size"_s).toString(), text);
}

void LocalImageServiceTest::theAnswerHasTheProvidersShape()
{
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const QJsonObject json = m_client->post(ServiceClient::goodBody()).json();
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
    const QByteArray direct = m_client->post(ServiceClient::goodBody()).picture();
    const ServiceReply reply = m_client->post(bodyFor(u"response_format"_s, u"url"_s));
    QCOMPARE(reply.data().keys(), (QStringList{u"size"_s, u"url"_s}));
    const QUrl url{reply.data().value(u"url"_s).toString()};
    QCOMPARE(url.host(), u"127.0.0.1"_s);
    QCOMPARE(url.port(), int{m_service->port()});
    QVERIFY(url.path().startsWith(u"/pictures/"_s) && url.path().endsWith(u".jpg"_s));
    const ServiceReply picture = m_client->get(url);
    QCOMPARE(picture.status, 200);
    QCOMPARE(picture.contentType, QByteArray{"image/jpeg"});
    QCOMPARE(picture.body, direct);
    QCOMPARE(quilmora::imageCodec::decode(picture.body).size(), QSize(1280, 720));
}

void LocalImageServiceTest::onlyTheSameRequestGivesTheSameBytes()
{
    QJsonObject body = bodyFor(u"prompt"_s, u"封面主标题文字：「秘密」 背景场景：未来科技。"_s);
    body.insert(u"image"_s, faceUrl());
    const QByteArray first = m_client->post(body).picture();
    start({.delay = 0ms});
    QVERIFY(!first.isEmpty());
    QCOMPARE(m_client->post(body).picture(), first);
    body.insert(u"prompt"_s, u"封面主标题文字：「秘密」 背景场景：海边。"_s);
    QVERIFY(m_client->post(body).picture() != first);
}

void LocalImageServiceTest::requestsAreCounted()
{
    const QUrl stats = m_service->endpoint().resolved(QUrl{u"/stats"_s});
    const QByteArray none = R"({"answered":0,"most_at_once":0,"requests":0,"under_way":0})";
    QCOMPARE(m_client->get(stats).body, none);
    QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 200);
    QCOMPARE(m_client->post(QJsonObject{}).status, 400);
    m_client->key = "Bearer other";
    QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 401);
    QCOMPARE(m_service->counts().requests, 3);
    QCOMPARE(m_service->counts().answered, 1);
    const QByteArray three = R"({"answered":1,"most_at_once":1,"requests":3,"under_way":0})";
    QCOMPARE(m_client->get(stats).body, three);
}

void LocalImageServiceTest::delayedRequestsRunAtOnceAndEndWithTheService()
{
    // As many as one client keeps connections to one host.
    constexpr int requests = 6;
    start({.delay = 1h});
    std::vector<std::unique_ptr<QNetworkReply>> replies;
    replies.reserve(requests);
    for (int i = 0; i < requests; ++i) {
        replies.push_back(m_client->postLater(ServiceClient::goodBody()));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_service->counts().underWay, requests, 30'000);
    m_service->stop();
    for (const auto &reply : replies) {
        QTRY_VERIFY(reply->isFinished());
        const ServiceReply answer = ServiceClient::answerOf(*reply);
        QCOMPARE(answer.error(), u"503 ServiceUnavailable  ServiceUnavailable"_s);
    }
    QCOMPARE(m_service->counts().mostAtOnce, requests);
    QCOMPARE(m_service->counts().underWay, 0);
    QCOMPARE(m_service->counts().answered, 0);
}

void LocalImageServiceTest::theDelayIsTheLeastTime()
{
    start({.delay = 700ms});
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 200);
    QVERIFY(timer.elapsed() >= 700);
}

void LocalImageServiceTest::aBodyOfSixtyMegabytesIsTaken()
{
    const QString url = dataUrl(samplePictures::pngOfSize(45'000'000), u"png"_s);
    QCOMPARE(m_client->post(bodyFor(u"image"_s, url)).status, 200);
}

void LocalImageServiceTest::aTakenPortIsReported()
{
    LocalImageService second{{.port = m_service->port(), .delay = 0ms}};
    QCOMPARE(second.start(), quint16{0});
}

void LocalImageServiceTest::theAskedPortIsUsed()
{
    QTcpServer probe;
    QVERIFY(probe.listen(QHostAddress::LocalHost));
    const quint16 port = probe.serverPort();
    probe.close();
    start({.port = port, .delay = 0ms});
    QCOMPARE(m_service->port(), port);
    QCOMPARE(m_service->endpoint(), QUrl{u"http://127.0.0.1:%1/api/v3/images/generations"_s.arg(port)});
    QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 200);
}

void LocalImageServiceTest::onlyTheLoopbackAddressAnswers()
{
    const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
    const auto outside = std::find_if(addresses.begin(), addresses.end(), [](const QHostAddress &address) {
        return !address.isLoopback() && address.protocol() == QAbstractSocket::IPv4Protocol;
    });
    if (outside == addresses.end()) {
        QSKIP("this machine has no other address");
    }
    QTcpSocket socket;
    socket.connectToHost(*outside, m_service->port());
    QVERIFY(!socket.waitForConnected(5000));
    QCOMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
}

void LocalImageServiceTest::stoppingTwiceIsHarmless()
{
    LocalImageService neverStarted;
    neverStarted.stop();
    m_service->stop();
    m_service->stop();
}

void LocalImageServiceTest::aClientThatHangsUpDoesNoHarm()
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, m_service->port());
    QVERIFY(socket.waitForConnected());
    socket.write("POST /api/v3/images/generations HTTP/1.1\r\nHost: x\r\nContent-Length: 1000000\r\n\r\n{");
    QVERIFY(socket.waitForBytesWritten());
    socket.abort();
    std::unique_ptr<QNetworkReply> dropped = m_client->postLater(ServiceClient::goodBody());
    QTRY_VERIFY(m_service->counts().requests > 0);
    dropped.reset();
    QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 200);
}

QUILMORA_TEST(LocalImageServiceTest, runGuiTest)

#include "LocalImageServiceTest.moc"
