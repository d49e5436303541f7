#include "generation/ImageGeneratorService.h"

#include "generation/GenerationProbe.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonDocument>
#include <QJsonValue>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

ScriptedAnswer goodAnswer(const ReceivedRequest & /*request*/)
{
    return ScriptedAnswer::whole(pictureAnswer());
}

void generate(ImageGeneratorService &service, const VolcengineConfig &config, Results &results)
{
    service.generateImage(u"p"_s, 2848, 1600, {}, config, results.collect());
}

} // namespace

class ImageGeneratorServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsAreCheckedInTheirOrder_data();
    void settingsAreCheckedInTheirOrder();
    void aKeyWithALineBreakSendsNothing_data();
    void aKeyWithALineBreakSendsNothing();
    void addressesThatLeadNowhereFailLater_data();
    void addressesThatLeadNowhereFailLater();
    void anAnswerOfNothingAtAllIsTold();
    void aPictureComesOnceOnTheMainThread();
    void anErrorOfTheServerComesOnTheMainThread();
    void theCallReturnsBeforePicturesAreEncoded();
    void eightRequestsEachHaveTheirOwnAnswer();
    void aCompletionMayStartTheNextRequest();
};

void ImageGeneratorServiceTest::settingsAreCheckedInTheirOrder_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("model");
    QTest::addColumn<GenError::Case>("expected");
    const auto invalidURL = GenError::Case::invalidURL;
    QTest::newRow("all empty") << u""_s << u""_s << u""_s << invalidURL;
    QTest::newRow("empty address") << u""_s << u"k"_s << u"m"_s << invalidURL;
    QTest::newRow("address of blanks") << u"   "_s << u"k"_s << u"m"_s << invalidURL;
    QTest::newRow("address with a blank") << u"http://127.0.0.1/a b"_s << u"k"_s << u"m"_s << invalidURL;
    QTest::newRow("blank before the address") << u" http://127.0.0.1/"_s << u"k"_s << u"m"_s << invalidURL;
    QTest::newRow("line break in the address") << u"http://127.0.0.1/\n"_s << u"k"_s << u"m"_s << invalidURL;
    QTest::newRow("broken port") << u"http://127.0.0.1:x/"_s << u"k"_s << u"m"_s << invalidURL;
    QTest::newRow("bad address and no key") << u"http://[oops"_s << u""_s << u""_s << invalidURL;
    const QString url = u"http://127.0.0.1:9/"_s;
    QTest::newRow("no key") << url << u""_s << u"m"_s << GenError::Case::invalidAPIKey;
    QTest::newRow("no key and no model") << url << u""_s << u""_s << GenError::Case::invalidAPIKey;
    QTest::newRow("no model") << url << u"k"_s << u""_s << GenError::Case::invalidModelID;
    QTest::newRow("key of one blank, no model") << url << u" "_s << u""_s << GenError::Case::invalidModelID;
}

void ImageGeneratorServiceTest::settingsAreCheckedInTheirOrder()
{
    QFETCH(const QString, url);
    QFETCH(const QString, key);
    QFETCH(const QString, model);
    QFETCH(const GenError::Case, expected);
    ImageGeneratorService service;
    Results results;
    generate(service, {url, key, model}, results);
    QCOMPARE(results.all.size(), 1);
    QVERIFY(results.isGenError());
    QCOMPARE(std::get<GenError>(results.all.first()).kind(), expected);
    QCOMPARE(results.threads.first(), QThread::currentThread());
}

void ImageGeneratorServiceTest::aKeyWithALineBreakSendsNothing_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("line feed") << u"key\nX-Added: 1"_s;
    QTest::newRow("carriage return") << u"key\rX-Added: 1"_s;
    QTest::newRow("both") << u"key\r\nX-Added: 1\r\n\r\n"_s;
    QTest::newRow("at the end") << u"key\n"_s;
    QTest::newRow("NUL") << QString{u"key"_s + QChar{u'\0'} + u"x"_s};
}

void ImageGeneratorServiceTest::aKeyWithALineBreakSendsNothing()
{
    QFETCH(const QString, key);
    ScriptedHttpServer server{goodAnswer};
    ImageGeneratorService service;
    Results results;
    VolcengineConfig config = configFor(server);
    config.apiKey = key;
    generate(service, config, results);
    QCOMPARE(results.all.size(), 1);
    QCOMPARE(results.text(), u"API Key 无效，请在「功能设置」中配置"_s);

    // A good request behind it: had the bad one been sent, it would have come before.
    generate(service, configFor(server), results);
    QTRY_COMPARE(results.all.size(), 2);
    QCOMPARE(server.headCount(), 1);
    QCOMPARE(server.requests().constFirst().headerCount("X-Added"), 0);
}

void ImageGeneratorServiceTest::addressesThatLeadNowhereFailLater_data()
{
    QTest::addColumn<QString>("url");
    QTest::newRow("no scheme") << u"ark.example.org/api/v3/images/generations"_s;
    QTest::newRow("path only") << u"/api/v3/images/generations"_s;
    QTest::newRow("word") << u"x"_s;
    QTest::newRow("ftp") << u"ftp://127.0.0.1/x"_s;
    QTest::newRow("ftp without host") << u"ftp://"_s;
    QTest::newRow("file") << u"file:///etc/hostname"_s;
    QTest::newRow("data") << u"data:application/json,x"_s;
    QTest::newRow("resource") << u"qrc:/translations/qtbase_zh_CN.qm"_s;
    QTest::newRow("http without host") << u"http://"_s;
    QTest::newRow("https without host") << u"https:///api"_s;
}

void ImageGeneratorServiceTest::addressesThatLeadNowhereFailLater()
{
    QFETCH(const QString, url);
    ImageGeneratorService service;
    Results results;
    generate(service, {url, u"k"_s, u"m"_s}, results);
    QCOMPARE(results.all.size(), 0);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isTransportError());
    QVERIFY(!results.text().isEmpty());
    QCOMPARE(results.threads.first(), QCoreApplication::instance()->thread());
}

void ImageGeneratorServiceTest::anAnswerOfNothingAtAllIsTold()
{
    // Neither a status nor a byte.
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole({}, "000");
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, configFor(server), results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isGenError());
    QCOMPARE(std::get<GenError>(results.all.first()).kind(), GenError::Case::noData);
    QCOMPARE(results.text(), u"未收到响应数据"_s);
    QCOMPARE(results.threads.first(), QCoreApplication::instance()->thread());
}

void ImageGeneratorServiceTest::aPictureComesOnceOnTheMainThread()
{
    ScriptedHttpServer server{goodAnswer};
    ImageGeneratorService service;
    Results results;
    generate(service, configFor(server), results);
    QCOMPARE(results.all.size(), 0);
    QTRY_COMPARE(results.all.size(), 1);
    QCOMPARE(results.picture().size(), QSize(32, 24));
    QCOMPARE(results.threads.first(), QCoreApplication::instance()->thread());

    // Whatever a second request brings comes after anything left of the first.
    generate(service, configFor(server), results);
    QTRY_COMPARE(results.all.size(), 2);
    QCoreApplication::processEvents();
    QCOMPARE(results.all.size(), 2);
    QCOMPARE(server.requestCount(), 2);
}

void ImageGeneratorServiceTest::anErrorOfTheServerComesOnTheMainThread()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(R"({"error":{"code":"C","message":"m"}})", "500 Internal Server Error");
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, configFor(server), results);
    QCOMPARE(results.all.size(), 0);
    QTRY_COMPARE(results.all.size(), 1);
    QCOMPARE(results.text(), u"[C] m"_s);
    QCOMPARE(results.threads.first(), QCoreApplication::instance()->thread());
}

void ImageGeneratorServiceTest::theCallReturnsBeforePicturesAreEncoded()
{
    ScriptedHttpServer server{goodAnswer};
    ImageGeneratorService service;
    Results results;
    // A picture whose pixels change under it, so that what is sent tells when it was encoded.
    std::array<QRgb, 64> pixels{};
    pixels.fill(qRgb(255, 0, 0));
    const QImage picture{static_cast<const uchar *>(static_cast<const void *>(pixels.data())), 8, 8,
                         QImage::Format_RGB32};
    // What was queued before, such as painting, is done before the pictures are encoded and sent.
    QMetaObject::invokeMethod(
        this, [&pixels] { pixels.fill(qRgb(0, 0, 255)); }, Qt::QueuedConnection);
    service.generateImage(u"p"_s, 1, 1, {picture}, configFor(server), results.collect());
    pixels.fill(qRgb(0, 255, 0));
    QTRY_COMPARE(results.all.size(), 1);
    const QJsonDocument body = QJsonDocument::fromJson(server.requests().constFirst().body);
    const QByteArray sent = body[u"image"_s].toString().section(u',', 1).toLatin1();
    QCOMPARE(QImage::fromData(QByteArray::fromBase64(sent), "png").pixelColor(4, 4), QColor(Qt::blue));
}

void ImageGeneratorServiceTest::eightRequestsEachHaveTheirOwnAnswer()
{
    constexpr int count = 8;
    // Answers only begin when all have arrived; the later one was asked for, the sooner it is answered. The
    // prompt says which one it is.
    ScriptedHttpServer server{[](const ReceivedRequest &request) {
        const qsizetype place = request.body.indexOf(R"("prompt":")") + 10;
        const int number = request.body.at(place) - '0';
        return ScriptedAnswer::whole(pictureAnswer({number + 10, 10})).after(20ms * (count - number));
    }};
    server.holdAnswersUntil(count);
    ImageGeneratorService service;
    QList<int> order;
    QHash<int, QSize> sizes;
    for (int number = 0; number < count; ++number) {
        service.generateImage(QString::number(number), 1, 1, {}, configFor(server),
                              [&, number](const GenerationResult &result) {
                                  QVERIFY(std::holds_alternative<QImage>(result));
                                  QVERIFY(!sizes.contains(number));
                                  order.append(number);
                                  sizes.insert(number, std::get<QImage>(result).size());
                              });
    }
    QTRY_COMPARE(sizes.size(), count);
    for (int number = 0; number < count; ++number) {
        QCOMPARE(sizes.value(number), QSize(number + 10, 10));
    }
    QCOMPARE(server.requestCount(), count);
    QVERIFY(order != QList<int>({0, 1, 2, 3, 4, 5, 6, 7}));
}

void ImageGeneratorServiceTest::aCompletionMayStartTheNextRequest()
{
    ScriptedHttpServer server{goodAnswer};
    ImageGeneratorService service;
    Results results;
    service.generateImage(u"p"_s, 1, 1, {}, configFor(server),
                          [&](const GenerationResult &) { generate(service, configFor(server), results); });
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isPicture());
    QCOMPARE(server.requestCount(), 2);
}

QTEST_GUILESS_MAIN(ImageGeneratorServiceTest)
#include "ImageGeneratorServiceTest.moc"
