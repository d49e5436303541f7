#include "imaging/ImageCodec.h"
#include "local_service/http/LocalImageService.h"
#include "model/CoverInputs.h"
#include "support/FailureNote.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"
#include "tools/ServiceClient.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QNetworkInterface>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <csignal>
#include <optional>
#include <vector>

using namespace quilmora::test;
using namespace std::chrono_literals;
using namespace quilmora::localservice;

namespace {

QString faceUrl() { return dataUrl(samplePictures::png(samplePictures::picture({300, 400})), u"png"_s); }

constexpr int longest = 30'000;

/// The service as a process of its own.
class Program final
{
public:
    explicit Program(const QStringList &arguments)
    {
        m_process.start(QString::fromUtf8(SERVICE_PROGRAM), arguments);
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Program)

    /// The address it says it listens on; empty when it says something else.
    QUrl endpoint()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(longest)) {
        }
        static const QRegularExpression pattern{
            u"\\Alistening on (http://127\\.0\\.0\\.1:[0-9]+/api/v3/images/generations)\n\\z"_s};
        const QRegularExpressionMatch match = pattern.match(QString::fromUtf8(m_process.readLine()));
        return QUrl{match.captured(1)};
    }
    void signal(int number) { ::kill(static_cast<pid_t>(m_process.processId()), number); }
    /// How it ended, or -1 when it crashed or goes on.
    int exitCode()
    {
        const bool ended = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(longest);
        return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    QByteArray output() { return m_process.readAllStandardOutput(); }

private:
    QProcess m_process;
};

} // namespace

/// The bundled image service, as an object and as a program.
class LocalServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { start({.delay = 0ms}); }

    void everySizeOfTheApplicationIsTaken()
    {
        for (const quilmora::CoverSize &preset : quilmora::CoverSize::presets()) {
            const QString text = u"%1x%2"_s.arg(preset.width).arg(preset.height);
            const FailureNote note{text.toUtf8()};
            QJsonObject body = ServiceClient::bodyWith(u"size"_s, text);
            body.insert(u"image"_s, faceUrl());
            const ServiceReply reply = m_client->post(body);
            QCOMPARE(reply.status, 200);
            QVERIFY(reply.picture().startsWith("\xFF\xD8\xFF"));
            const QSize size = quilmora::imageCodec::decode(reply.picture()).size();
            QCOMPARE(u"%1x%2"_s.arg(size.width()).arg(size.height()), text);
            QCOMPARE(reply.data().value(u"size"_s).toString(), text);
        }
    }

    void theResponseHasTheProvidersShape()
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

    void anAddressLeadsToThePicture()
    {
        const QByteArray direct = m_client->post(ServiceClient::goodBody()).picture();
        const ServiceReply reply = m_client->post(ServiceClient::bodyWith(u"response_format"_s, u"url"_s));
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

    void onlyTheSameRequestGivesTheSameBytes()
    {
        QJsonObject body =
            ServiceClient::bodyWith(u"prompt"_s, u"封面主标题文字：「秘密」 背景场景：未来科技。"_s);
        body.insert(u"image"_s, faceUrl());
        const QByteArray first = m_client->post(body).picture();
        start({.delay = 0ms});
        QVERIFY(!first.isEmpty());
        QCOMPARE(m_client->post(body).picture(), first);
        body.insert(u"prompt"_s, u"封面主标题文字：「秘密」 背景场景：海边。"_s);
        QVERIFY(m_client->post(body).picture() != first);
    }

    void requestsAreCounted()
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

    void delayedRequestsRunAtOnceAndEndWithTheService()
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
            const ServiceReply ended = ServiceClient::replyOf(*reply);
            QCOMPARE(ended.error(), u"503 ServiceUnavailable  ServiceUnavailable"_s);
        }
        QCOMPARE(m_service->counts().mostAtOnce, requests);
        QCOMPARE(m_service->counts().underWay, 0);
        QCOMPARE(m_service->counts().answered, 0);
    }

    void theDelayIsTheLeastTime()
    {
        start({.delay = 700ms});
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 200);
        QVERIFY(timer.elapsed() >= 700);
    }

    void aBodyOfSixtyMegabytesIsTaken()
    {
        const QString url = dataUrl(samplePictures::pngOfSize(45'000'000), u"png"_s);
        QCOMPARE(m_client->post(ServiceClient::bodyWith(u"image"_s, url)).status, 200);
    }

    void theAskedPortIsUsed()
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

    void onlyTheLoopbackAddressAnswers()
    {
        const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
        const auto outside =
            std::find_if(addresses.begin(), addresses.end(), [](const QHostAddress &address) {
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

    void stoppingTwiceIsHarmless()
    {
        LocalImageService neverStarted;
        neverStarted.stop();
        m_service->stop();
        m_service->stop();
    }

    void aClientThatHangsUpDoesNoHarm()
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_service->port());
        QVERIFY(socket.waitForConnected());
        socket.write(
            "POST /api/v3/images/generations HTTP/1.1\r\nHost: x\r\nContent-Length: 1000000\r\n\r\n{");
        QVERIFY(socket.waitForBytesWritten());
        socket.abort();
        std::unique_ptr<QNetworkReply> dropped = m_client->postLater(ServiceClient::goodBody());
        QTRY_VERIFY(m_service->counts().requests > 0);
        dropped.reset();
        QCOMPARE(m_client->post(ServiceClient::goodBody()).status, 200);
    }

    void theProgramTakesKeyAndModels()
    {
        Program program{
            {u"--delay=0"_s, u"--key"_s, u"k 1"_s, u"--model"_s, u"one"_s, u"--model"_s, u"two"_s}};
        ServiceClient client{program.endpoint()};
        QCOMPARE(client.post(ServiceClient::goodBody()).status, 401);
        client.key = "Bearer k 1";
        QJsonObject body = ServiceClient::goodBody();
        QCOMPARE(client.post(body).status, 404);
        for (const QString &model : {u"one"_s, u"two"_s}) {
            body.insert(u"model"_s, model);
            QCOMPARE(client.post(body).status, 200);
        }
    }

    void theProgramEndsOnSignals()
    {
        for (const int number : {SIGTERM, SIGINT}) {
            Program program{{}};
            QVERIFY(!program.endpoint().isEmpty());
            program.signal(number);
            QCOMPARE(program.exitCode(), 0);
            QCOMPARE(program.output(), QByteArray{});
        }
    }

    void aWaitingRequestDoesNotHoldTheEndUp()
    {
        Program program{{u"--delay"_s, u"3600000"_s}};
        const QUrl endpoint = program.endpoint();
        ServiceClient client{endpoint};
        const auto reply = client.postLater(ServiceClient::goodBody());
        const QUrl stats = endpoint.resolved(QUrl{u"/stats"_s});
        QTRY_COMPARE(client.get(stats).json().value(u"under_way"_s).toInt(), 1);
        program.signal(SIGTERM);
        QCOMPARE(program.exitCode(), 0);
    }

    void badArgumentsAreRefused()
    {
        for (const QString &argument : {u"--port=x"_s, u"--port=65536"_s, u"--delay=-1"_s, u"more"_s}) {
            Program program{{argument}};
            QCOMPARE(program.exitCode(), 2);
            QCOMPARE(program.output(), QByteArray{});
        }
    }

    void aTakenPortIsReported()
    {
        Program first{{}};
        const QString port = QString::number(first.endpoint().port());
        Program second{{u"--port"_s, port}};
        QCOMPARE(second.exitCode(), 1);
    }

private:
    /// Puts another service into the place of the one that every test begins with.
    void start(const LocalServiceOptions &options)
    {
        m_client.reset();
        m_service.emplace(options);
        QVERIFY(m_service->start() != 0);
        m_client.emplace(m_service->endpoint());
    }

    std::optional<LocalImageService> m_service;
    std::optional<ServiceClient> m_client;
};

QUILMORA_TEST(LocalServiceTest, runGuiTest)
#include "LocalServiceTest.moc"
