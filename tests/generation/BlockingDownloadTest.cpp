#include "generation/BlockingDownload.h"

#include "generation/StopSignal.h"
#include "support/SamplePictures.h"
#include "support/ScriptedHttpServer.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

/// Runs the download on a thread of its own, as it wants to be.
std::optional<QByteArray> download(const QUrl &url, std::chrono::milliseconds idleLimit = 10s)
{
    std::optional<QByteArray> bytes;
    const StopSignal stopSignal;
    const std::unique_ptr<QThread> thread{
        QThread::create([&] { bytes = downloadBlocking(url, idleLimit, stopSignal); })};
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
    void readsTheWholeResource_data();
    void readsTheWholeResource();
    void followsRedirectsBetweenWebAddresses();
    void readsDataAddresses();
    void failuresGiveNothing_data();
    void failuresGiveNothing();
    void localFilesAreNotRead_data();
    void localFilesAreNotRead();
    void nobodyAtTheAddress();
    void slowBytesKeepItAlive();
    void stopsWhenTold_data();
    void stopsWhenTold();
};

void BlockingDownloadTest::readsTheWholeResource_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::newRow("with a length") << ScriptedAnswer::whole(samplePng());
    QTest::newRow("in chunks") << ScriptedAnswer::chunked(samplePng(), 50);
    QTest::newRow("packed") << ScriptedAnswer::encoded(samplePng());
    QTest::newRow("until the connection ends") << ScriptedAnswer{{{"HTTP/1.1 200 OK\r\n\r\n" + samplePng()}}};
}

void BlockingDownloadTest::readsTheWholeResource()
{
    QFETCH(ScriptedAnswer, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return answer;
    }};
    QCOMPARE(download(server.url(u"/a b.png"_s)), samplePng());
    QCOMPARE(server.requests().constFirst().method(), "GET");
    QCOMPARE(server.requests().constFirst().path(), "/a%20b.png");
    QCOMPARE(server.requests().constFirst().headerCount("Authorization"), 0);
}

void BlockingDownloadTest::followsRedirectsBetweenWebAddresses()
{
    ScriptedHttpServer other{[](const auto &) {
        return ScriptedAnswer::whole(samplePng());
    }};
    ScriptedHttpServer server{[&other](const auto &) {
        return ScriptedAnswer::redirect(302, other.url(u"/b.png"_s).toEncoded());
    }};
    QCOMPARE(download(server.url()), samplePng());
}

void BlockingDownloadTest::readsDataAddresses()
{
    QCOMPARE(download(QUrl{u"data:text/plain;base64,aGVsbG8="_s}), "hello");
}

void BlockingDownloadTest::failuresGiveNothing_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::newRow("not found") << ScriptedAnswer::whole(samplePng(), "404 Not Found");
    QTest::newRow("forbidden") << ScriptedAnswer::whole(samplePng(), "403 Forbidden");
    QTest::newRow("server error") << ScriptedAnswer::whole(samplePng(), "500 Oops");
    QTest::newRow("challenge") << ScriptedAnswer::whole(samplePng(), "401 No",
                                                        "WWW-Authenticate: Basic realm=\"x\"\r\n");
    QTest::newRow("closed") << ScriptedAnswer::hangUp();
    QTest::newRow("cut") << ScriptedAnswer::cut(samplePng(), 100'000);
    QTest::newRow("silent") << ScriptedAnswer::silence();
    QTest::newRow("silent within the body")
        << ScriptedAnswer{ScriptedAnswer::cut("x", 2).pieces, ScriptedAnswer::End::stayOpen};
    QTest::newRow("sent to a local file") << ScriptedAnswer::redirect(302, "file:///etc/hostname");
    QTest::newRow("sent in a circle") << ScriptedAnswer::redirect(302, "/");
}

void BlockingDownloadTest::failuresGiveNothing()
{
    QFETCH(ScriptedAnswer, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return answer;
    }};
    QVERIFY(!download(server.url(), 150ms));
}

void BlockingDownloadTest::localFilesAreNotRead_data()
{
    QTest::addColumn<QString>("url");
    QTest::newRow("file") << u"file://%1"_s;
    QTest::newRow("path") << u"%1"_s;
    QTest::newRow("file of this host") << u"file://localhost%1"_s;
    QTest::newRow("ftp") << u"ftp://127.0.0.1%1"_s;
    QTest::newRow("resource") << u"qrc:/translations/qtbase_zh_CN.qm"_s;
    QTest::newRow("relative") << u"a.png"_s;
    QTest::newRow("empty") << u""_s;
}

void BlockingDownloadTest::localFilesAreNotRead()
{
    QFETCH(const QString, url);
    const QTemporaryDir folder;
    const QString path = samplePictures::write(folder.filePath(u"a.png"_s), samplePng());
    QVERIFY(!download(QUrl{url.contains(u"%1"_s) ? url.arg(path) : url}));
}

void BlockingDownloadTest::nobodyAtTheAddress()
{
    QUrl url;
    {
        const ScriptedHttpServer gone{[](const auto &) {
            return ScriptedAnswer::hangUp();
        }};
        url = gone.url();
    }
    QVERIFY(!download(url));
    QVERIFY(!download(QUrl{u"http://quilmora.invalid/a.png"_s}));
}

void BlockingDownloadTest::slowBytesKeepItAlive()
{
    static constexpr auto limit = 800ms;
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::dripping(samplePng(), 8, limit / 4);
    }};
    QCOMPARE(download(server.url(), limit), samplePng());
}

void BlockingDownloadTest::stopsWhenTold_data()
{
    QTest::addColumn<bool>("beforehand");
    QTest::newRow("before it begins") << true;
    QTest::newRow("under way") << false;
}

void BlockingDownloadTest::stopsWhenTold()
{
    QFETCH(const bool, beforehand);
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    StopSignal stopSignal;
    if (beforehand) {
        stopSignal.stop();
    }
    std::optional<QByteArray> bytes;
    const std::unique_ptr<QThread> thread{
        QThread::create([&] { bytes = downloadBlocking(server.url(), 60s, stopSignal); })};
    QElapsedTimer timer;
    timer.start();
    thread->start();
    if (!beforehand) {
        QTRY_COMPARE(server.requestCount(), 1);
        stopSignal.stop();
    }
    QVERIFY(thread->wait());
    QVERIFY(timer.elapsed() < 10'000);
    QVERIFY(!bytes);
}

QTEST_GUILESS_MAIN(BlockingDownloadTest)
#include "BlockingDownloadTest.moc"
