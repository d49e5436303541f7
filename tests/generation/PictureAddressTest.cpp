#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

/// A limit that no test runs into.
constexpr std::chrono::milliseconds ample = 10s;

QByteArray samplePng()
{
    return samplePictures::png(samplePictures::picture({40, 20}));
}

/// The one result of a request whose answer is `body`.
Results resultOf(const QByteArray &body, std::chrono::milliseconds downloadLimit = ample)
{
    ScriptedHttpServer server{[body](const auto &) {
        return ScriptedAnswer::whole(body);
    }};
    ImageGeneratorService service{{.request = 10s, .download = downloadLimit}};
    Results results;
    service.generateImage(u"p"_s, 1, 1, {}, configFor(server), results.collect());
    if (!QTest::qWaitFor([&results] { return !results.all.isEmpty(); }, 20'000)) {
        results.all.append(TransportError{u"no result"_s});
    }
    return results;
}

} // namespace

/// Answers that name the picture's address instead of carrying it.
class PictureAddressTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePictureIsReadWithoutTheKey();
    void anUnusablePictureIsReadFromItsAddress();
    void downloadsThatFailAreNoErrorOfTheirOwn_data();
    void downloadsThatFailAreNoErrorOfTheirOwn();
    void addressesThatAreNotRead_data();
    void addressesThatAreNotRead();
    void aSlowDownloadHoldsUpNoOtherRequest();
};

void PictureAddressTest::thePictureIsReadWithoutTheKey()
{
    ScriptedHttpServer pictures{[](const auto &) {
        return ScriptedAnswer::whole(samplePng());
    }};
    const Results results = resultOf(addressAnswer(pictures.url(u"/cover.png"_s).toEncoded() + "?Sig=a%2Fb"));
    QCOMPARE(results.picture().size(), QSize(40, 20));
    const ReceivedRequest request = pictures.requests().constFirst();
    QCOMPARE(request.method(), "GET");
    QCOMPARE(request.path(), "/cover.png?Sig=a%2Fb");
    QCOMPARE(request.headerCount("Authorization"), 0);
    QVERIFY(!request.head.contains("secret-key"));
}

void PictureAddressTest::anUnusablePictureIsReadFromItsAddress()
{
    ScriptedHttpServer pictures{[](const auto &) {
        return ScriptedAnswer::whole(samplePng());
    }};
    const Results results = resultOf(R"({"data":[{"b64_json":"bm8gcGljdHVyZQ==","url":")" +
                                     pictures.url(u"/a"_s).toEncoded() + R"("}]})");
    QCOMPARE(results.picture().size(), QSize(40, 20));
}

void PictureAddressTest::downloadsThatFailAreNoErrorOfTheirOwn_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<std::chrono::milliseconds>("limit");
    QTest::newRow("not found") << ScriptedAnswer::whole("not found", "404 Not Found") << ample;
    QTest::newRow("no picture") << ScriptedAnswer::whole("<html>") << ample;
    QTest::newRow("cut picture") << ScriptedAnswer::cut(samplePng().chopped(20), samplePng().size()) << ample;
    QTest::newRow("closed") << ScriptedAnswer::hangUp() << ample;
    QTest::newRow("silent") << ScriptedAnswer::silence() << 150ms;
}

void PictureAddressTest::downloadsThatFailAreNoErrorOfTheirOwn()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(const std::chrono::milliseconds, limit);
    ScriptedHttpServer pictures{[answer](const auto &) {
        return answer;
    }};
    QCOMPARE(resultOf(addressAnswer(pictures.url().toEncoded()), limit).text(), u"无法解析图片数据"_s);
    QVERIFY(pictures.headCount() >= 1);
}

void PictureAddressTest::addressesThatAreNotRead_data()
{
    QTest::addColumn<QString>("url");
    QTest::newRow("file") << u"file://%1"_s;
    QTest::newRow("path") << u"%1"_s;
    QTest::newRow("relative") << u"cover.png"_s;
    QTest::newRow("ftp") << u"ftp://127.0.0.1/cover.png"_s;
    QTest::newRow("with a blank") << u"http://127.0.0.1/a b"_s;
    QTest::newRow("empty") << u""_s;
}

void PictureAddressTest::addressesThatAreNotRead()
{
    QFETCH(const QString, url);
    const QTemporaryDir folder;
    const QString path = samplePictures::write(folder.filePath(u"cover.png"_s), samplePng());
    const QString address = url.contains(u"%1"_s) ? url.arg(path) : url;
    QCOMPARE(resultOf(addressAnswer(address.toUtf8())).text(), u"无法解析图片数据"_s);
}

void PictureAddressTest::aSlowDownloadHoldsUpNoOtherRequest()
{
    // The pictures of the first requests only come when told to, after the last request has been answered.
    constexpr int slowRequests = 8;
    ScriptedHttpServer pictures{[](const auto &) {
        return ScriptedAnswer::whole(samplePng());
    }};
    pictures.holdAnswersUntil(slowRequests + 1);
    ScriptedHttpServer server{[&pictures](const ReceivedRequest &request) {
        return ScriptedAnswer::whole(request.body.contains("slow") ? addressAnswer(pictures.url().toEncoded())
                                                                   : pictureAnswer());
    }};
    ImageGeneratorService service;
    Results slow;
    for (int count = 0; count < slowRequests; ++count) {
        service.generateImage(u"slow"_s, 1, 1, {}, configFor(server), slow.collect());
    }
    QTRY_COMPARE(pictures.requestCount(), slowRequests);
    Results quick;
    service.generateImage(u"quick"_s, 1, 1, {}, configFor(server), quick.collect());
    QTRY_COMPARE(quick.all.size(), 1);
    QVERIFY(quick.isPicture());
    QCOMPARE(slow.all.size(), 0);

    service.generateImage(u"slow"_s, 1, 1, {}, configFor(server), slow.collect());
    QTRY_COMPARE(slow.all.size(), slowRequests + 1);
    for (int index = 0; index <= slowRequests; ++index) {
        QVERIFY(slow.isPicture(index));
    }
}

QTEST_GUILESS_MAIN(PictureAddressTest)
#include "PictureAddressTest.moc"
