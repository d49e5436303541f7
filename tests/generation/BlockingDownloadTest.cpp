#include "generation/BlockingDownload.h"

#include "generation/CancellationToken.h"
#include "support/SamplePictures.h"
#include "support/ScriptedHttpServer.h"
#include "support/TestProgram.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
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

QByteArray samplePng()
{
    return samplePictures::png(samplePictures::picture({32, 24}));
}

} // namespace

class BlockingDownloadTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheWholeResource_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        QTest::newRow("with a length") << ScriptedResponse::whole(samplePng());
        QTest::newRow("in chunks") << ScriptedResponse::chunked(samplePng(), 50);
        QTest::newRow("compressed") << ScriptedResponse::encoded(samplePng());
        QTest::newRow("until the connection ends")
            << ScriptedResponse{{{"HTTP/1.1 200 OK\r\n\r\n" + samplePng()}}};
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
    }

    void readsDataAddresses() { QCOMPARE(download(QUrl{u"data:text/plain;base64,aGVsbG8="_s}), "hello"); }

    void failuresGiveNothing_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        const auto row = [](const char *name, const ScriptedResponse &response) {
            QTest::newRow(name) << response;
        };
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

    void stopsWithItsCancellationToken_data()
    {
        QTest::addColumn<bool>("beforehand");
        QTest::newRow("before it begins") << true;
        QTest::newRow("under way") << false;
    }

    void stopsWithItsCancellationToken()
    {
        QFETCH(const bool, beforehand);
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
};

QUILMORA_TEST(BlockingDownloadTest, runCoreTest)
#include "BlockingDownloadTest.moc"
