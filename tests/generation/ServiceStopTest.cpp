#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

void generate(ImageGeneratorService &service, const ScriptedHttpServer &server, Results &results)
{
    service.generateImage(u"p"_s, 1, 1, {samplePictures::picture({64, 48})}, configFor(server),
                          results.collect());
}

/// Asks for a cover and waits until the whole answer has been taken, without a turn of this thread's events.
void generateAndTakeAnswer(ImageGeneratorService &service, const ScriptedHttpServer &server, Results &results)
{
    generate(service, server, results);
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
    void requestsAndDownloadsUnderWayAreDropped();
    void aRequestNotYetSentIsNeverSent();
    void anAnswerOnItsWayComesInTimeOrNotAtAll();
    void aCoverThatHadComeIsHandedOver();
    void anErrorThatHadComeIsDropped();
    void destroyingHandsNothingOver();
    void aStoppedServiceSendsNothing();
    void stoppingTwiceAndDestroyingAreQuiet();
    static void whatTheCompletionOwnsIsLetGoOnTheMainThread();
};

void ServiceStopTest::requestsAndDownloadsUnderWayAreDropped()
{
    ScriptedHttpServer pictures{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    ScriptedHttpServer server{[&pictures](const ReceivedRequest &request) {
        return request.body.contains("silent")
                   ? ScriptedAnswer::silence()
                   : ScriptedAnswer::whole(addressAnswer(pictures.url().toEncoded()));
    }};
    ImageGeneratorService service;
    Results results;
    for (int count = 0; count < 4; ++count) {
        service.generateImage(u"silent"_s, 1, 1, {}, configFor(server), results.collect());
        service.generateImage(u"address"_s, 1, 1, {}, configFor(server), results.collect());
    }
    QTRY_COMPARE(server.requestCount(), 8);
    QTRY_COMPARE(pictures.requestCount(), 4);

    QElapsedTimer timer;
    timer.start();
    service.stop();
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    drain();
    QCOMPARE(results.all.size(), 0);
}

void ServiceStopTest::aRequestNotYetSentIsNeverSent()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    service.stop();
    drain();
    QCOMPARE(results.all.size(), 0);
    QCOMPARE(server.connectionCount(), 0);
}

void ServiceStopTest::anAnswerOnItsWayComesInTimeOrNotAtAll()
{
    auto answered = std::make_shared<std::atomic_bool>(false);
    ScriptedHttpServer server{[answered](const auto &) {
        answered->store(true);
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    // Several times, to stop at different moments of the answer's way.
    for (int round = 0; round < 20; ++round) {
        answered->store(false);
        ImageGeneratorService service;
        Results results;
        generate(service, server, results);
        QCoreApplication::processEvents();
        while (!*answered) {
            QThread::yieldCurrentThread();
        }
        QElapsedTimer elapsed;
        elapsed.start();
        while (elapsed.nsecsElapsed() < round * qint64{200'000}) {
            QThread::yieldCurrentThread();
        }
        service.stop();
        const qsizetype count = results.all.size();
        QVERIFY(count == 0 || (count == 1 && results.isPicture()));
        drain();
        QCOMPARE(results.all.size(), count);
    }
}

void ServiceStopTest::aCoverThatHadComeIsHandedOver()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::keptAlive(pictureAnswer({2000, 1500}));
    }};
    ImageGeneratorService service;
    Results results;
    generateAndTakeAnswer(service, server, results);
    QCOMPARE(results.all.size(), 0);
    service.stop();
    QCOMPARE(results.all.size(), 1);
    QCOMPARE(results.picture().size(), QSize(2000, 1500));
    QCOMPARE(results.threads.constFirst(), QThread::currentThread());
    drain();
    QCOMPARE(results.all.size(), 1);
}

void ServiceStopTest::anErrorThatHadComeIsDropped()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::keptAlive("Bad Gateway");
    }};
    ImageGeneratorService service;
    Results results;
    generateAndTakeAnswer(service, server, results);
    service.stop();
    drain();
    QCOMPARE(results.all.size(), 0);
}

void ServiceStopTest::destroyingHandsNothingOver()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::keptAlive(pictureAnswer());
    }};
    Results results;
    {
        ImageGeneratorService service;
        generateAndTakeAnswer(service, server, results);
    }
    drain();
    QCOMPARE(results.all.size(), 0);
}

void ServiceStopTest::aStoppedServiceSendsNothing()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    ImageGeneratorService service;
    service.stop();
    Results results;
    generate(service, server, results);
    drain();
    QCOMPARE(results.all.size(), 0);
    QCOMPARE(server.connectionCount(), 0);
}

void ServiceStopTest::stoppingTwiceAndDestroyingAreQuiet()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    Results results;
    {
        ImageGeneratorService service;
        generate(service, server, results);
        QTRY_COMPARE(server.requestCount(), 1);
        service.stop();
        service.stop();
    }
    {
        ImageGeneratorService service;
        generate(service, server, results);
        QTRY_COMPARE(server.requestCount(), 2);
    }
    drain();
    QCOMPARE(results.all.size(), 0);
}

void ServiceStopTest::whatTheCompletionOwnsIsLetGoOnTheMainThread()
{
    struct Owned {
        explicit Owned(QThread **where) : destroyedOn{where} {}
        Q_DISABLE_COPY_MOVE(Owned)
        ~Owned() { *destroyedOn = QThread::currentThread(); }
        QThread **destroyedOn;
    };
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    ImageGeneratorService service;
    QThread *destroyedOn = nullptr;
    service.generateImage(
        u"p"_s, 1, 1, {}, configFor(server),
        [owned = std::make_shared<Owned>(&destroyedOn)](const GenerationResult &) { Q_UNUSED(owned) });
    QTRY_COMPARE(server.requestCount(), 1);
    QCOMPARE(destroyedOn, nullptr);
    service.stop();
    QCOMPARE(destroyedOn, QThread::currentThread());
}

QTEST_GUILESS_MAIN(ServiceStopTest)
#include "ServiceStopTest.moc"
