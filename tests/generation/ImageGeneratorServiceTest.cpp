#include "generation/ImageGeneratorService.h"

#include "generation/Client.h"
#include "generation/ResponseParser.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QJsonValue>

#include <array>
#include <ctime>
#include <numeric>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

/// For how long this thread has worked, whatever else the machine does.
std::chrono::nanoseconds workOfThisThread()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

} // namespace

class ImageGeneratorServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsAreCheckedInTheirOrder_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("model");
        QTest::addColumn<GenError::Case>("expected");
        const auto row = [](const QString &url, const QString &key, const QString &model,
                            GenError::Case expected) {
            QTest::addRow("<%s>, <%s>, <%s>", qPrintable(url), qPrintable(key), qPrintable(model))
                << url << key << model << expected;
        };
        row({}, {}, {}, GenError::Case::invalidURL);
        row(u"http://[oops"_s, {}, {}, GenError::Case::invalidURL);
        for (const QString &url : {u""_s, u"   "_s, u"http://127.0.0.1/a b"_s, u" http://127.0.0.1/"_s,
                                   u"http://127.0.0.1/\n"_s, u"http://127.0.0.1:x/"_s}) {
            row(url, u"k"_s, u"m"_s, GenError::Case::invalidURL);
        }
        const QString url = u"http://127.0.0.1:9/"_s;
        row(url, {}, u"m"_s, GenError::Case::invalidAPIKey);
        row(url, {}, {}, GenError::Case::invalidAPIKey);
        row(url, u"k"_s, {}, GenError::Case::invalidModelID);
        row(url, u" "_s, {}, GenError::Case::invalidModelID);
    }

    void settingsAreCheckedInTheirOrder()
    {
        QFETCH(const QString, url);
        QFETCH(const QString, key);
        QFETCH(const QString, model);
        QFETCH(const GenError::Case, expected);
        Client client;
        client.start({url, key, model});
        QCOMPARE(client.outcomes, QList<Outcome>{Outcome::of(GenError{expected})});
        QCOMPARE(client.threads.first(), QThread::currentThread());
    }

    void aKeyWithALineBreakSendsNothing_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("line feed") << u"key\nX-Added: 1"_s;
        QTest::newRow("carriage return") << u"key\rX-Added: 1"_s;
        QTest::newRow("both") << u"key\r\nX-Added: 1\r\n\r\n"_s;
        QTest::newRow("at the end") << u"key\n"_s;
        QTest::newRow("NUL") << QString{u"key"_s + QChar{u'\0'} + u"x"_s};
    }

    void aKeyWithALineBreakSendsNothing()
    {
        QFETCH(const QString, key);
        const ScriptedHttpServer server{pictureResponse()};
        Client client;
        VolcengineConfig config = configFor(server);
        config.apiKey = key;
        client.start(config);
        QCOMPARE(client.outcomes, QList<Outcome>{Outcome::of(GenError{GenError::Case::invalidAPIKey})});

        // A good request behind it: had the bad one been sent, it would have come before.
        QCOMPARE(client.generate(server), Outcome::picture());
        QCOMPARE(server.headCount(), 1);
        QCOMPARE(server.requests().constFirst().headerCount("X-Added"), 0);
    }

    void everyResultComesOnceOnTheMainThread_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        QTest::addColumn<Outcome>("outcome");
        QTest::newRow("a picture") << pictureResponse() << Outcome::picture();
        QTest::newRow("an error of the service")
            << ScriptedResponse::whole(R"({"error":{"code":"C","message":"m"}})", "500 Internal Server Error")
            << Outcome::shown(u"[C] m"_s);
        QTest::newRow("neither a status nor a byte")
            << ScriptedResponse::whole({}, "000") << Outcome::of(GenError{GenError::Case::noData});
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

    void picturesAreDecodedOffTheMainThread()
    {
        const QByteArray body = pictureAnswer({5000, 4000});
        const auto beforeDecoding = workOfThisThread();
        QVERIFY(std::holds_alternative<QImage>(parseResponse(body, {})));
        const auto workOfDecoding = workOfThisThread() - beforeDecoding;

        const ScriptedHttpServer server{ScriptedResponse::whole(body)};
        Client client;
        const auto before = workOfThisThread();
        QCOMPARE(client.generate(server), Outcome::picture({5000, 4000}));
        QVERIFY2(workOfThisThread() - before < workOfDecoding / 2, "The main thread decodes");
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
        const QJsonDocument body = QJsonDocument::fromJson(server.requests().constFirst().body);
        const QByteArray sent = body[u"image"_s].toString().section(u',', 1).toLatin1();
        QCOMPARE(QImage::fromData(QByteArray::fromBase64(sent), "png").pixelColor(4, 4), QColor(Qt::blue));
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
};

QUILMORA_TEST(ImageGeneratorServiceTest, runCoreTest)
#include "ImageGeneratorServiceTest.moc"
