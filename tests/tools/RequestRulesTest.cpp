#include "local_service/http/LocalImageService.h"
#include "support/SamplePictures.h"
#include "tools/ServiceClient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

LocalServiceOptions options()
{
    LocalServiceOptions result;
    result.delay = 0ms;
    result.models = {u"doubao-seedream-4-0-250828"_s, u"ep-20250101-abcde"_s};
    return result;
}

QString pngUrl()
{
    return dataUrl(samplePictures::png(samplePictures::picture({16, 12})), u"png"_s);
}

QString jpegUrl()
{
    return dataUrl(samplePictures::jpeg(samplePictures::picture({16, 12})), u"jpeg"_s);
}

QJsonArray images(int count)
{
    QJsonArray result;
    for (int i = 0; i < count; ++i) {
        result.append(pngUrl());
    }
    return result;
}

} // namespace

/// Every rule of the public interface, over real HTTP.
class RequestRulesTest final : public QObject
{
    Q_OBJECT

    void checkEnvelope(const ServiceReply &reply, int status, const QString &code, const QString &param,
                       const QString &type) const;

    LocalImageService m_service{options()};
    std::optional<ServiceClient> m_client;

private Q_SLOTS:
    void initTestCase();
    void badMembersAreNamed_data();
    void badMembersAreNamed();
    void goodMembersAreTaken_data();
    void goodMembersAreTaken();
    void membersMayBeMissing();
    void badBodiesAreRefused_data();
    void badBodiesAreRefused();
    void wrongKeysAreRefused_data();
    void wrongKeysAreRefused();
    void theContentTypeMustBeJson();
    void theContentTypeMayNameACharset();
    void unknownModelsAreNotFound();
    void furtherModelsAreAccepted();
    void unknownPathsAreNotFound();
    void otherMethodsAreNotAllowed();
    void pathComesBeforeKeyBeforeJsonBeforeMembersBeforeModel();
    void everyErrorHasARequestIdOfItsOwn();
};

void RequestRulesTest::initTestCase()
{
    QVERIFY(m_service.start() != 0);
    m_client.emplace(m_service.endpoint());
}

void RequestRulesTest::checkEnvelope(const ServiceReply &reply, int status, const QString &code,
                                     const QString &param, const QString &type) const
{
    QCOMPARE(reply.status, status);
    QVERIFY(reply.contentType.startsWith("application/json"));
    QCOMPARE(reply.json().keys(), QStringList{u"error"_s});
    QCOMPARE(reply.json().value(u"error"_s).toObject().keys(),
             (QStringList{u"code"_s, u"message"_s, u"param"_s, u"type"_s}));
    QCOMPARE(reply.error(u"code"_s), code);
    QCOMPARE(reply.error(u"param"_s), param);
    QCOMPARE(reply.error(u"type"_s), type);
    QVERIFY(reply.error(u"message"_s).contains(u" Request id: "_s));
}

void RequestRulesTest::badMembersAreNamed_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QJsonValue>("value");
    const auto row = [](const char *name, const QString &member, const QJsonValue &value) {
        QTest::newRow(name) << member << value;
    };
    row("model missing", u"model"_s, QJsonValue::Undefined);
    row("model number", u"model"_s, 4);
    row("model null", u"model"_s, QJsonValue::Null);
    row("model empty", u"model"_s, QString{});
    row("prompt missing", u"prompt"_s, QJsonValue::Undefined);
    row("prompt number", u"prompt"_s, 1);
    row("prompt empty", u"prompt"_s, QString{});
    row("size number", u"size"_s, 1280);
    row("size null", u"size"_s, QJsonValue::Null);
    row("size empty", u"size"_s, QString{});
    row("size a word", u"size"_s, u"2K"_s);
    row("size in capitals", u"size"_s, u"1280X720"_s);
    row("size with a star", u"size"_s, u"1280*720"_s);
    row("size with blanks", u"size"_s, u"1280 x 720"_s);
    row("size with a line break", u"size"_s, u"1280x720\n"_s);
    row("size grouped", u"size"_s, u"1,280x720"_s);
    row("size in other digits", u"size"_s, u"１２８０x７２０"_s);
    row("size with a zero in front", u"size"_s, u"01280x720"_s);
    row("size negative", u"size"_s, u"-1280x-720"_s);
    row("size half", u"size"_s, u"1280x"_s);
    row("size one pixel too small", u"size"_s, u"959x961"_s);
    row("size too large", u"size"_s, u"4097x4096"_s);
    row("size beyond all numbers", u"size"_s, u"99999999999999999999x1"_s);
    row("size too wide", u"size"_s, u"3856x240"_s);
    row("size too tall", u"size"_s, u"240x3856"_s);
    row("format number", u"response_format"_s, 1);
    row("format unknown", u"response_format"_s, u"png"_s);
    row("format in capitals", u"response_format"_s, u"URL"_s);
    row("watermark text", u"watermark"_s, u"false"_s);
    row("watermark number", u"watermark"_s, 0);
    row("watermark null", u"watermark"_s, QJsonValue::Null);
    row("sequence boolean", u"sequential_image_generation"_s, false);
    row("sequence unknown", u"sequential_image_generation"_s, u"enabled"_s);
    row("image number", u"image"_s, 1);
    row("image null", u"image"_s, QJsonValue::Null);
    row("image object", u"image"_s, QJsonObject{});
    row("image empty text", u"image"_s, QString{});
    row("image empty list", u"image"_s, QJsonArray{});
    row("image web address", u"image"_s, u"https://example.com/a.png"_s);
    row("image bare base64", u"image"_s, pngUrl().mid(22));
    row("image other kind", u"image"_s, pngUrl().replace(u"png"_s, u"gif"_s));
    row("image PNG called JPEG", u"image"_s, pngUrl().replace(u"png"_s, u"jpeg"_s));
    row("image without padding", u"image"_s, u"data:image/png;base64,iVBORw0KGgo"_s);
    row("image with a line break", u"image"_s, pngUrl().insert(60, u'\n'));
    row("image cut in half", u"image"_s, pngUrl().left(62));
    row("image no picture", u"image"_s, dataUrl("hello", u"png"_s));
    row("image list with a number", u"image"_s, QJsonArray{pngUrl(), 1});
    row("image list with a bad one", u"image"_s, QJsonArray{pngUrl(), dataUrl("hello", u"png"_s)});
    row("image list of 15", u"image"_s, images(15));
    row("unknown", u"seed"_s, 1);
    row("unknown though close", u"Prompt"_s, u"x"_s);
    row("unknown without name", QString{}, u"x"_s);
}

void RequestRulesTest::badMembersAreNamed()
{
    QFETCH(const QString, member);
    QFETCH(const QJsonValue, value);
    QJsonObject body = ServiceClient::goodBody();
    body.insert(member, value);
    const int before = m_service.answeredCount();
    checkEnvelope(m_client->post(body), 400, u"InvalidParameter"_s, member, u"BadRequest"_s);
    QCOMPARE(m_service.answeredCount(), before);
}

void RequestRulesTest::goodMembersAreTaken_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QJsonValue>("value");
    const auto row = [](const char *name, const QString &member, const QJsonValue &value) {
        QTest::newRow(name) << member << value;
    };
    row("prompt of one blank", u"prompt"_s, u" "_s);
    row("prompt of 100,000 signs", u"prompt"_s, u"封"_s.repeated(100'000));
    row("size smallest", u"size"_s, u"960x960"_s);
    row("size largest", u"size"_s, u"4096x4096"_s);
    row("size widest", u"size"_s, u"3840x240"_s);
    row("size tallest", u"size"_s, u"240x3840"_s);
    row("format base64", u"response_format"_s, u"b64_json"_s);
    row("format url", u"response_format"_s, u"url"_s);
    row("watermark", u"watermark"_s, true);
    row("sequence auto", u"sequential_image_generation"_s, u"auto"_s);
    row("image PNG", u"image"_s, pngUrl());
    row("image JPEG", u"image"_s, jpegUrl());
    row("image list of one", u"image"_s, images(1));
    row("image list of both kinds", u"image"_s, QJsonArray{pngUrl(), jpegUrl()});
    row("image list of 14", u"image"_s, images(14));
}

void RequestRulesTest::goodMembersAreTaken()
{
    QFETCH(const QString, member);
    QFETCH(const QJsonValue, value);
    QJsonObject body = ServiceClient::goodBody();
    body.insert(member, value);
    const int before = m_service.answeredCount();
    const ServiceReply reply = m_client->post(body);
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.data().value(u"size"_s), body.value(u"size"_s));
    QCOMPARE(m_service.answeredCount(), before + 1);
}

void RequestRulesTest::membersMayBeMissing()
{
    const ServiceReply reply =
        m_client->post(QJsonObject{{u"model"_s, u"doubao-seedream-4-0-250828"_s}, {u"prompt"_s, u"海"_s}});
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.data().value(u"size"_s).toString(), u"2048x2048"_s);
    QVERIFY(reply.data().contains(u"url"_s));
    QVERIFY(!reply.data().contains(u"b64_json"_s));
}

void RequestRulesTest::badBodiesAreRefused_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty") << QByteArray{};
    QTest::newRow("no JSON") << QByteArray{"hello"};
    QTest::newRow("cut") << QByteArray{R"({"model":"x)"};
    QTest::newRow("list") << QByteArray{"[]"};
    QTest::newRow("text") << QByteArray{R"("x")"};
    QTest::newRow("not UTF-8") << QByteArray{"{\"model\":\"\xFF\xFE\"}"};
}

void RequestRulesTest::badBodiesAreRefused()
{
    QFETCH(const QByteArray, body);
    checkEnvelope(m_client->post(body, m_client->key, "application/json"), 400, u"InvalidParameter"_s, {},
                  u"BadRequest"_s);
}

void RequestRulesTest::wrongKeysAreRefused_data()
{
    QTest::addColumn<QByteArray>("authorization");
    QTest::newRow("missing") << QByteArray{};
    QTest::newRow("other") << QByteArray{"Bearer other"};
    QTest::newRow("longer") << QByteArray{"Bearer local-demo-key2"};
    QTest::newRow("other case") << QByteArray{"Bearer LOCAL-DEMO-KEY"};
    QTest::newRow("no scheme") << QByteArray{"local-demo-key"};
    QTest::newRow("other scheme") << QByteArray{"Basic local-demo-key"};
}

void RequestRulesTest::wrongKeysAreRefused()
{
    QFETCH(const QByteArray, authorization);
    const QByteArray body = QJsonDocument{ServiceClient::goodBody()}.toJson();
    checkEnvelope(m_client->post(body, authorization, "application/json"), 401, u"AuthenticationError"_s, {},
                  u"Unauthorized"_s);
}

void RequestRulesTest::theContentTypeMustBeJson()
{
    const QByteArray body = QJsonDocument{ServiceClient::goodBody()}.toJson();
    for (const QByteArray &type : {QByteArray{"text/plain"}, QByteArray{"application/jsonx"}}) {
        checkEnvelope(m_client->post(body, m_client->key, type), 400, u"InvalidParameter"_s, {},
                      u"BadRequest"_s);
    }
}

void RequestRulesTest::theContentTypeMayNameACharset()
{
    const QByteArray body = QJsonDocument{ServiceClient::goodBody()}.toJson();
    QCOMPARE(m_client->post(body, m_client->key, "Application/JSON; charset=utf-8").status, 200);
}

void RequestRulesTest::unknownModelsAreNotFound()
{
    QJsonObject body = ServiceClient::goodBody();
    body.insert(u"model"_s, u"doubao-seedream-9"_s);
    const ServiceReply reply = m_client->post(body);
    checkEnvelope(reply, 404, u"InvalidEndpointOrModel.NotFound"_s, {}, u"NotFound"_s);
    QVERIFY(reply.error(u"message"_s).contains(u"doubao-seedream-9"_s));
}

void RequestRulesTest::furtherModelsAreAccepted()
{
    QJsonObject body = ServiceClient::goodBody();
    body.insert(u"model"_s, u"ep-20250101-abcde"_s);
    const ServiceReply reply = m_client->post(body);
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.json().value(u"model"_s).toString(), u"ep-20250101-abcde"_s);
}

void RequestRulesTest::unknownPathsAreNotFound()
{
    QUrl url = m_service.endpoint();
    for (const QString &path : {u"/"_s, u"/api/v3/images"_s, u"/api/v3/images/generations/"_s,
                                u"/pictures/00.jpg"_s, u"/pictures/../stats.jpg"_s}) {
        url.setPath(path);
        checkEnvelope(m_client->get(url), 404, u"NotFound"_s, {}, u"NotFound"_s);
    }
    url.setPath(u"/api/v2/images/generations"_s);
    checkEnvelope(m_client->send("POST", url), 404, u"NotFound"_s, {}, u"NotFound"_s);
}

void RequestRulesTest::otherMethodsAreNotAllowed()
{
    for (const QByteArray &method :
         {QByteArray{"GET"}, QByteArray{"PUT"}, QByteArray{"DELETE"}, QByteArray{"PATCH"}}) {
        checkEnvelope(m_client->send(method, m_service.endpoint()), 405, u"MethodNotAllowed"_s, {},
                      u"MethodNotAllowed"_s);
    }
    QUrl stats = m_service.endpoint();
    stats.setPath(u"/stats"_s);
    QCOMPARE(m_client->send("POST", stats).status, 405);
}

void RequestRulesTest::pathComesBeforeKeyBeforeJsonBeforeMembersBeforeModel()
{
    QUrl elsewhere = m_service.endpoint();
    elsewhere.setPath(u"/elsewhere"_s);
    QCOMPARE(m_client->send("POST", elsewhere).status, 404);
    QCOMPARE(m_client->post("no JSON", "Bearer other", "application/json").status, 401);
    QJsonObject body = ServiceClient::goodBody();
    body.insert(u"model"_s, u"unknown"_s);
    body.insert(u"watermark"_s, 1);
    QCOMPARE(m_client->post(body).error(u"param"_s), u"watermark"_s);
    body.insert(u"watermark"_s, true);
    QCOMPARE(m_client->post(body).status, 404);
}

void RequestRulesTest::everyErrorHasARequestIdOfItsOwn()
{
    const QString first = m_client->post(QJsonObject{}).error(u"message"_s);
    const QString second = m_client->post(QJsonObject{}).error(u"message"_s);
    QVERIFY(first != second);
    QCOMPARE(first.section(u" Request id: "_s, 1).size(), 32);
}

QTEST_MAIN(RequestRulesTest)

#include "RequestRulesTest.moc"
