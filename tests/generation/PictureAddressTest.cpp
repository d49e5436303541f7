#include "generation/BlockingDownload.h"
#include "generation/Client.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <memory>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

/// Runs the download on a thread of its own, as it wants to be.
std::optional<QByteArray> download(const QUrl &url, std::chrono::milliseconds idleLimit = 10s)
{
    std::optional<QByteArray> bytes;
    const CancellationToken cancellationToken;
    const std::unique_ptr<QThread> thread{
        QThread::create([&] { bytes = downloadBlocking(url, idleLimit, cancellationToken); })};
    thread->start();
    thread->wait();
    return bytes;
}

QByteArray samplePng() { return samplePictures::png(samplePictures::picture({40, 20})); }

/// What comes of a response with that body.
Outcome outcomeOf(const QByteArray &body, std::chrono::milliseconds limit = 10s)
{
    return Client{limit}.generate(ScriptedHttpServer{ScriptedResponse::whole(body)});
}

} // namespace

/// Responses that name the picture's address instead of carrying it, and the download from there.
class PictureAddressTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheWholeResource_data()
    {
        const DataRows<ScriptedResponse> row{"response"};
        row("with a length", ScriptedResponse::whole(samplePng()));
        row("in chunks", ScriptedResponse::chunked(samplePng(), 50));
        row("compressed", ScriptedResponse::encoded(samplePng()));
        row("until the connection ends", ScriptedResponse{{{"HTTP/1.1 200 OK\r\n\r\n" + samplePng()}}});
    }

    void readsTheWholeResource()
    {
        QFETCH(const ScriptedResponse, response);
        const ScriptedHttpServer server{response};
        QCOMPARE(download(server.url(u"/a b.png"_s)), samplePng());
        QCOMPARE(server.requests().constFirst().method(), "GET");
        QCOMPARE(server.requests().constFirst().path(), "/a%20b.png");
        QCOMPARE(server.requests().constFirst().headerCount("Authorization"), 0);
    }

    void followsRedirectsBetweenWebAddresses()
    {
        const ScriptedHttpServer other{ScriptedResponse::whole(samplePng())};
        const ScriptedHttpServer server{ScriptedResponse::redirect(302, other.url(u"/b.png"_s).toEncoded())};
        QCOMPARE(download(server.url()), samplePng());
        QCOMPARE(other.requests().constFirst().headerCount("Authorization"), 0);
    }

    void readsDataAddresses() { QCOMPARE(download(QUrl{u"data:text/plain;base64,aGVsbG8="_s}), "hello"); }

    void failuresGiveNothing_data()
    {
        const DataRows<ScriptedResponse> row{"response"};
        row("not found", ScriptedResponse::whole(samplePng(), "404 Not Found"));
        row("forbidden", ScriptedResponse::whole(samplePng(), "403 Forbidden"));
        row("server error", ScriptedResponse::whole(samplePng(), "500 Oops"));
        row("challenge",
            ScriptedResponse::whole(samplePng(), "401 No", "WWW-Authenticate: Basic realm=\"x\"\r\n"));
        row("closed", ScriptedResponse::hangUp());
        row("truncated", ScriptedResponse::cut(samplePng(), 100'000));
        row("silent", ScriptedResponse::silence());
        row("silent within the body",
            {ScriptedResponse::cut("x", 2).pieces, ScriptedResponse::End::stayOpen});
        row("sent to a local file", ScriptedResponse::redirect(302, "file:///etc/hostname"));
        row("sent in a circle", ScriptedResponse::redirect(302, "/"));
    }

    void failuresGiveNothing()
    {
        QFETCH(const ScriptedResponse, response);
        const ScriptedHttpServer server{response};
        QVERIFY(!download(server.url(), 150ms));
    }

    void localFilesAreNotRead()
    {
        const QTemporaryDir folder;
        const QString path = samplePictures::write(folder.filePath(u"a.png"_s), samplePng());
        for (const QString &url :
             QStringList{u"file://"_s + path, path, u"file://localhost"_s + path, u"ftp://127.0.0.1"_s + path,
                         u"qrc:/translations/qtbase_zh_CN.qm"_s, u"a.png"_s, u""_s}) {
            QVERIFY2(!download(QUrl{url}), qPrintable(url));
        }
    }

    void nobodyAtTheAddress()
    {
        const QUrl gone = ScriptedHttpServer{ScriptedResponse::hangUp()}.url();
        QVERIFY(!download(gone));
        QVERIFY(!download(QUrl{u"http://quilmora.invalid/a.png"_s}));
    }

    void slowBytesKeepItAlive()
    {
        static constexpr auto limit = 800ms;
        const ScriptedHttpServer server{ScriptedResponse::dripping(samplePng(), 8, limit / 4)};
        QCOMPARE(download(server.url(), limit), samplePng());
    }

    void stopsWithItsCancellationToken()
    {
        for (const bool beforehand : {true, false}) {
            const FailureNote note{beforehand ? "before it begins" : "under way"};
            const ScriptedHttpServer server{ScriptedResponse::silence()};
            CancellationToken cancellationToken;
            if (beforehand) {
                cancellationToken.cancel();
            }
            std::optional<QByteArray> bytes;
            const std::unique_ptr<QThread> thread{
                QThread::create([&] { bytes = downloadBlocking(server.url(), 60s, cancellationToken); })};
            QElapsedTimer timer;
            timer.start();
            thread->start();
            if (!beforehand) {
                QTRY_COMPARE(server.requestCount(), 1);
                cancellationToken.cancel();
            }
            QVERIFY(thread->wait());
            QVERIFY(timer.elapsed() < 10'000);
            QVERIFY(!bytes);
        }
    }

    void thePictureIsReadWithoutTheKey()
    {
        for (const QByteArray unusable : {"", R"("b64_json":"bm8gcGljdHVyZQ==",)"}) {
            const ScriptedHttpServer pictures{ScriptedResponse::whole(samplePng())};
            const QByteArray address = pictures.url(u"/cover.png"_s).toEncoded() + "?Sig=a%2Fb";
            const QByteArray body =
                addressAnswer(address).insert(addressAnswer({}).indexOf(R"("url")"), unusable);
            QCOMPARE(outcomeOf(body), Outcome::picture({40, 20}));
            const ReceivedRequest request = pictures.requests().constFirst();
            QCOMPARE(request.method(), "GET");
            QCOMPARE(request.path(), "/cover.png?Sig=a%2Fb");
            QCOMPARE(request.headerCount("Authorization"), 0);
            QVERIFY(!request.head.contains("secret-key"));
        }
    }

    void aSlowDownloadHoldsUpNoOtherRequest()
    {
        // The pictures of the first requests are only sent after the last request has had its response.
        constexpr int slowRequests = 8;
        ScriptedHttpServer pictures{ScriptedResponse::whole(samplePng())};
        pictures.holdAnswersUntil(slowRequests + 1);
        const ScriptedHttpServer server{[&pictures](const ReceivedRequest &request) {
            return request.body.contains("slow")
                       ? ScriptedResponse::whole(addressAnswer(pictures.url().toEncoded()))
                       : pictureResponse();
        }};
        Client client;
        for (int count = 0; count < slowRequests; ++count) {
            client.start(server, u"slow"_s);
        }
        QTRY_COMPARE(pictures.requestCount(), slowRequests);
        QCOMPARE(client.generate(server, u"quick"_s), Outcome::picture());
        QCOMPARE(client.outcomes.size(), 1);

        client.start(server, u"slow"_s);
        QTRY_COMPARE(client.outcomes.size(), slowRequests + 2);
        QCOMPARE(client.outcomes.count(Outcome::picture({40, 20})), slowRequests + 1);
    }
};

QUILMORA_TEST(PictureAddressTest, runCoreTest)
#include "PictureAddressTest.moc"
#include "support/FailureNote.h"
