#include "generation/Client.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

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

class ServiceStopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

    void aRequestNotYetSentIsNeverSent_data()
    {
        QTest::addColumn<bool>("isStoppedBefore");
        QTest::newRow("asked for before the stop") << false;
        QTest::newRow("asked for after the stop") << true;
    }

    void aRequestNotYetSentIsNeverSent()
    {
        QFETCH(const bool, isStoppedBefore);
        const ScriptedHttpServer server{pictureResponse()};
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

    void anErrorThatHadComeIsDropped()
    {
        const ScriptedHttpServer server{ScriptedResponse::keptAlive("Bad Gateway")};
        Client client;
        takeResponse(client, server);
        client.service->stop();
        drain();
        QCOMPARE(client.outcomes.size(), 0);
    }

    void destroyingHandsNothingOver()
    {
        const ScriptedHttpServer server{ScriptedResponse::keptAlive(pictureAnswer())};
        Client client;
        takeResponse(client, server);
        client.service.reset();
        drain();
        QCOMPARE(client.outcomes.size(), 0);
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

QUILMORA_TEST(ServiceStopTest, runCoreTest)
#include "ServiceStopTest.moc"
