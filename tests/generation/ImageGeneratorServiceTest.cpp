#include "generation/ImageGeneratorService.h"

#include "generation/Client.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <array>
#include <memory>
#include <numeric>
#include <utility>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

/// Sends a request with a picture and waits until the whole response has been taken, without a turn of this
/// thread's events.
void takeResponse(Client &client, const ScriptedHttpServer &server)
{
    client.start(server, u"p"_s, {samplePictures::picture({64, 48})});
    QCoreApplication::processEvents();
    while (server.requestCount() == 0 || server.openConnections() > 0) {
        QThread::yieldCurrentThread();
    }
}

/// Lets everything that is still on its way to this thread arrive.
void drain()
{
    for (int round = 0; round < 10; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

} // namespace

/// Requests and their results, and what becomes of them when the service stops.
class ImageGeneratorServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsAreCheckedInTheirOrder()
    {
        const QString good = u"http://127.0.0.1:9/"_s;
        using Case = GenError::Case;
        const auto compare = [](const VolcengineConfig &config, Case expected) {
            Client client;
            client.start(config);
            QCOMPARE(client.outcomes, QList<Outcome>{Outcome::of(GenError{expected})});
            QCOMPARE(client.threads.first(), QThread::currentThread());
        };
        for (const QString &url : {u""_s, u"   "_s, u"http://127.0.0.1/a b"_s, u" http://127.0.0.1/"_s,
                                   u"http://127.0.0.1/\n"_s, u"http://127.0.0.1:x/"_s, u"http://[oops"_s}) {
            compare({url, u"k"_s, u"m"_s}, Case::invalidURL);
            compare({url, {}, {}}, Case::invalidURL);
        }
        compare({good, {}, u"m"_s}, Case::invalidAPIKey);
        compare({good, {}, {}}, Case::invalidAPIKey);
        compare({good, u"k"_s, {}}, Case::invalidModelID);
        compare({good, u" "_s, {}}, Case::invalidModelID);
    }

    void aKeyWithALineBreakSendsNothing()
    {
        const ScriptedHttpServer server{pictureResponse()};
        Client client;
        VolcengineConfig config = configFor(server);
        for (const QString &key : {u"key\nX-Added: 1"_s, u"key\rX-Added: 1"_s, u"key\r\nX-Added: 1\r\n\r\n"_s,
                                   u"key\n"_s, u"key\0x"_s}) {
            const FailureNote note{key.toUtf8()};
            config.apiKey = key;
            QCOMPARE(client.generate(config), Outcome::of(GenError{GenError::Case::invalidAPIKey}));
        }
        // A good request behind them: had a bad one been sent, it would have come before.
        QCOMPARE(client.generate(server), Outcome::picture());
        QCOMPARE(server.headCount(), 1);
        QCOMPARE(server.requests().constFirst().headerCount("X-Added"), 0);
    }

    void everyResultComesOnceOnTheMainThread_data()
    {
        const DataRows<ScriptedResponse, Outcome> row{"response", "outcome"};
        row("a picture", pictureResponse(), Outcome::picture());
        row("an error of the service",
            ScriptedResponse::whole(R"({"error":{"code":"C","message":"m"}})", "500 Internal Server Error"),
            Outcome::shown(u"[C] m"_s));
        row("neither a status nor a byte", ScriptedResponse::whole({}, "000"),
            Outcome::of(GenError{GenError::Case::noData}));
    }

    void everyResultComesOnceOnTheMainThread()
    {
        QFETCH(const ScriptedResponse, response);
        QFETCH(const Outcome, outcome);
        const ScriptedHttpServer server{response};
        Client client;
        client.start(server);
        QCOMPARE(client.outcomes.size(), 0);
        QTRY_COMPARE(client.outcomes, QList<Outcome>{outcome});

        // Whatever a second request brings comes after anything left of the first.
        QCOMPARE(client.generate(server), outcome);
        QCoreApplication::processEvents();
        QCOMPARE(client.outcomes.size(), 2);
        QCOMPARE(server.requestCount(), 2);
        QCOMPARE(client.threads, QList<QThread *>(2, QCoreApplication::instance()->thread()));
    }

    void responsesAreDecodedOffTheMainThread()
    {
        // To decode this response the picture's address is read, which a main thread without events cannot
        // do.
        const ScriptedHttpServer pictures{
            ScriptedResponse::whole(samplePictures::png(samplePictures::picture({8, 6})))};
        const ScriptedHttpServer server{ScriptedResponse::whole(addressAnswer(pictures.url().toEncoded()))};
        Client client;
        client.start(server);
        QCoreApplication::processEvents();
        for (const QDeadlineTimer end{20s}; pictures.requestCount() == 0; QThread::msleep(1)) {
            QVERIFY2(!end.hasExpired(), "The main thread decodes");
        }
        QTRY_COMPARE(client.outcomes, QList<Outcome>{Outcome::picture({8, 6})});
    }

    void theCallReturnsBeforePicturesAreEncoded()
    {
        const ScriptedHttpServer server{pictureResponse()};
        Client client;
        // A picture whose pixels change under it, so that what is sent tells when it was encoded.
        std::array<QRgb, 64> pixels{};
        pixels.fill(qRgb(255, 0, 0));
        const QImage picture{static_cast<const uchar *>(static_cast<const void *>(pixels.data())), 8, 8,
                             QImage::Format_RGB32};
        // What was queued before, such as painting, is done before the pictures are encoded and sent.
        QMetaObject::invokeMethod(
            this, [&pixels] { pixels.fill(qRgb(0, 0, 255)); }, Qt::QueuedConnection);
        client.start(server, u"p"_s, {picture});
        pixels.fill(qRgb(0, 255, 0));
        QTRY_COMPARE(client.outcomes.size(), 1);
        const QList<QImage> sent = picturesIn(server.requests().constFirst());
        QCOMPARE(sent.constFirst().pixelColor(4, 4), QColor(Qt::blue));
    }

    void eightRequestsEachHaveTheirOwnResponse()
    {
        constexpr int count = 8;
        // Responses only begin when all requests have arrived, the later the sooner. The prompt says which
        // one it is.
        ScriptedHttpServer server{[](const ReceivedRequest &request) {
            const int number = QJsonDocument::fromJson(request.body)[u"prompt"_s].toString().toInt();
            return pictureResponse({number + 10, 10}).after(20ms * (count - number));
        }};
        server.holdAnswersUntil(count);
        ImageGeneratorService service;
        QList<int> order;
        for (int number = 0; number < count; ++number) {
            service.generateImage(QString::number(number), 1, 1, {}, configFor(server),
                                  [&order, number](const GenerationResult &result) {
                                      QCOMPARE(Outcome::of(result), Outcome::picture({number + 10, 10}));
                                      order.append(number);
                                  });
        }
        QTRY_COMPARE(order.size(), count);
        QCOMPARE(server.requestCount(), count);
        QList<int> numbers(count);
        std::iota(numbers.begin(), numbers.end(), 0);
        QVERIFY(order != numbers);
        std::sort(order.begin(), order.end());
        QCOMPARE(order, numbers);
    }

    void aCompletionMayStartTheNextRequest()
    {
        const ScriptedHttpServer server{pictureResponse()};
        Client client;
        client.service->generateImage(u"p"_s, 1, 1, {}, configFor(server),
                                      [&](const GenerationResult &) { client.start(server); });
        QTRY_COMPARE(client.outcomes, QList<Outcome>{Outcome::picture()});
        QCOMPARE(server.requestCount(), 2);
    }

    void requestsAndDownloadsUnderWayAreDropped()
    {
        const ScriptedHttpServer pictures{ScriptedResponse::silence()};
        const ScriptedHttpServer server{[&pictures](const ReceivedRequest &request) {
            return request.body.contains("silent")
                       ? ScriptedResponse::silence()
                       : ScriptedResponse::whole(addressAnswer(pictures.url().toEncoded()));
        }};
        Client client;
        for (int count = 0; count < 4; ++count) {
            client.start(server, u"silent"_s);
            client.start(server, u"address"_s);
        }
        QTRY_COMPARE(server.requestCount(), 8);
        QTRY_COMPARE(pictures.requestCount(), 4);

        QElapsedTimer timer;
        timer.start();
        client.service->stop();
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
        drain();
        QCOMPARE(client.outcomes.size(), 0);
    }

    void aRequestNotYetSentIsNeverSent()
    {
        const ScriptedHttpServer server{pictureResponse()};
        for (const bool isStoppedBefore : {false, true}) {
            const FailureNote note{isStoppedBefore ? "stopped before" : "stopped behind it"};
            Client client;
            if (isStoppedBefore) {
                client.service->stop();
            }
            client.start(server);
            client.service->stop();
            drain();
            QCOMPARE(client.outcomes.size(), 0);
            QCOMPARE(server.connectionCount(), 0);
        }
    }

    void aResponseOnItsWayComesInTimeOrNotAtAll()
    {
        auto isSent = std::make_shared<std::atomic_bool>(false);
        const ScriptedHttpServer server{[isSent](const auto &) {
            isSent->store(true);
            return pictureResponse();
        }};
        // Several times, to stop at different moments.
        for (unsigned long round = 0; round < 20; ++round) {
            isSent->store(false);
            Client client;
            client.start(server, u"p"_s, {samplePictures::picture({64, 48})});
            QCoreApplication::processEvents();
            while (!*isSent) {
                QThread::yieldCurrentThread();
            }
            QThread::usleep(round * 200);
            client.service->stop();
            const QList<Outcome> outcomes = client.outcomes;
            QVERIFY(outcomes.isEmpty() || outcomes == QList<Outcome>{Outcome::picture()});
            drain();
            QCOMPARE(client.outcomes, outcomes);
        }
    }

    void aCoverThatHadComeIsHandedOver()
    {
        const ScriptedHttpServer server{ScriptedResponse::keptAlive(pictureAnswer({2000, 1500}))};
        Client client;
        takeResponse(client, server);
        QCOMPARE(client.outcomes.size(), 0);
        client.service->stop();
        QCOMPARE(client.outcomes, QList<Outcome>{Outcome::picture({2000, 1500})});
        QCOMPARE(client.threads.constFirst(), QThread::currentThread());
        drain();
        QCOMPARE(client.outcomes.size(), 1);
    }

    void anErrorThatHadComeIsDroppedAndSoIsACoverWhereTheServiceIsDestroyed()
    {
        const ScriptedHttpServer bad{ScriptedResponse::keptAlive("Bad Gateway")};
        Client stopped;
        takeResponse(stopped, bad);
        stopped.service->stop();
        const ScriptedHttpServer good{ScriptedResponse::keptAlive(pictureAnswer())};
        Client destroyed;
        takeResponse(destroyed, good);
        destroyed.service.reset();
        drain();
        QCOMPARE(stopped.outcomes.size(), 0);
        QCOMPARE(destroyed.outcomes.size(), 0);
    }

    void stoppingTwiceAndDestroyingWithARequestUnderWay()
    {
        ScriptedHttpServer server{ScriptedResponse::silence()};
        for (const bool isStopped : {true, false}) {
            server.forgetRequests();
            Client client;
            client.start(server);
            QTRY_COMPARE(server.requestCount(), 1);
            if (isStopped) {
                client.service->stop();
                client.service->stop();
            }
            client.service.reset();
            drain();
            QCOMPARE(client.outcomes.size(), 0);
        }
    }

    void whatTheCompletionOwnsIsDestroyedOnTheMainThread()
    {
        QThread *destroyedOn = nullptr;
        auto owned = std::shared_ptr<void>{nullptr, [&destroyedOn](const void *) {
                                               destroyedOn = QThread::currentThread();
                                           }};
        const ScriptedHttpServer server{ScriptedResponse::silence()};
        ImageGeneratorService service;
        service.generateImage(u"p"_s, 1, 1, {}, configFor(server),
                              [owned = std::move(owned)](const GenerationResult &) { Q_UNUSED(owned) });
        QTRY_COMPARE(server.requestCount(), 1);
        QCOMPARE(destroyedOn, nullptr);
        service.stop();
        QCOMPARE(destroyedOn, QThread::currentThread());
    }
};

QUILMORA_TEST(ImageGeneratorServiceTest, runCoreTest)
#include "ImageGeneratorServiceTest.moc"
#include "support/FailureNote.h"
