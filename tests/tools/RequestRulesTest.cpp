#include "local_service/http/LocalImageService.h"
#include "support/FailureNote.h"
#include "support/SamplePictures.h"
#include "support/TestProgram.h"
#include "tools/ServiceClient.h"

#include <optional>

using namespace quilmora::localservice;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

QString pngUrl() { return dataUrl(samplePictures::png(samplePictures::picture({16, 12})), u"png"_s); }

QString jpegUrl() { return dataUrl(samplePictures::jpeg(samplePictures::picture({16, 12})), u"jpeg"_s); }

QJsonArray images(qsizetype count) { return QJsonArray::fromStringList(QStringList{count, pngUrl()}); }

void addColumns()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QJsonValue>("value");
}

/// A row for each of the values.
void addRows(const QString &member, const QList<QJsonValue> &values)
{
    static int number = 0;
    for (const QJsonValue &value : values) {
        ++number;
        const QByteArray text = QJsonDocument{QJsonArray{value}}.toJson(QJsonDocument::Compact).left(40);
        QTest::addRow("%s %d %s", qUtf8Printable(member), number, text.constData()) << member << value;
    }
}

} // namespace

/// Every rule of the public interface, over real HTTP.
class RequestRulesTest final : public QObject
{
    Q_OBJECT

    LocalImageService m_service{
        {.delay = 0ms, .models = {u"doubao-seedream-4-0-250828"_s, u"ep-20250101-abcde"_s}}};
    std::optional<ServiceClient> m_client;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_service.start() != 0);
        m_client.emplace(m_service.endpoint());
    }

    void badMembersAreNamed_data()
    {
        addColumns();
        const QJsonValue missing = QJsonValue::Undefined;
        const QJsonValue null = QJsonValue::Null;
        const QJsonValue broken = dataUrl("hello", u"png"_s);
        addRows(u"model"_s, {missing, 4, null, QString{}});
        addRows(u"prompt"_s, {missing, 1, QString{}});
        addRows(u"size"_s, {1280, null, QString{}, u"2K"_s, u"1280X720"_s, u"1280*720"_s, u"1280 x 720"_s,
                            u"1280x720\n"_s, u"1,280x720"_s, u"１２８０x７２０"_s, u"01280x720"_s,
                            u"-1280x-720"_s, u"1280x"_s});
        // One pixel too small, too large, beyond all numbers, too wide, too tall.
        addRows(u"size"_s,
                {u"959x961"_s, u"4097x4096"_s, u"99999999999999999999x1"_s, u"3856x240"_s, u"240x3856"_s});
        addRows(u"response_format"_s, {1, u"png"_s, u"URL"_s});
        addRows(u"watermark"_s, {u"false"_s, 0, null});
        addRows(u"sequential_image_generation"_s, {false, u"enabled"_s});
        addRows(u"image"_s,
                {1, null, QJsonObject{}, QString{}, QJsonArray{}, u"https://example.com/a.png"_s});
        // Bare base64, another kind, a PNG called JPEG, without padding, with a line break, cut in half, no
        // picture.
        addRows(u"image"_s, {pngUrl().mid(22), pngUrl().replace(u"png"_s, u"gif"_s),
                             pngUrl().replace(u"png"_s, u"jpeg"_s), u"data:image/png;base64,iVBORw0KGgo"_s,
                             pngUrl().insert(60, u'\n'), pngUrl().left(62), broken});
        addRows(u"image"_s, {QJsonArray{pngUrl(), 1}, QJsonArray{pngUrl(), broken}, images(15)});
        addRows(u"seed"_s, {1});
        addRows(u"Prompt"_s, {u"x"_s});
        addRows({}, {u"x"_s});
    }

    void badMembersAreNamed()
    {
        QFETCH(const QString, member);
        QFETCH(const QJsonValue, value);
        const int before = m_service.counts().answered;
        const ServiceReply reply = m_client->post(ServiceClient::bodyWith(member, value));
        QCOMPARE(reply.error(), u"400 InvalidParameter %1 BadRequest"_s.arg(member));
        QCOMPARE(m_service.counts().answered, before);
    }

    void goodMembersAreTaken_data()
    {
        addColumns();
        addRows(u"prompt"_s, {u" "_s, u"封"_s.repeated(100'000)});
        // The smallest, the largest, the widest, the tallest.
        addRows(u"size"_s, {u"960x960"_s, u"4096x4096"_s, u"3840x240"_s, u"240x3840"_s});
        addRows(u"response_format"_s, {u"b64_json"_s, u"url"_s});
        addRows(u"watermark"_s, {true});
        addRows(u"sequential_image_generation"_s, {u"auto"_s});
        addRows(u"image"_s, {pngUrl(), jpegUrl(), images(1), QJsonArray{pngUrl(), jpegUrl()}, images(14)});
    }

    void goodMembersAreTaken()
    {
        QFETCH(const QString, member);
        QFETCH(const QJsonValue, value);
        const QJsonObject body = ServiceClient::bodyWith(member, value);
        const int before = m_service.counts().answered;
        const ServiceReply reply = m_client->post(body);
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.data().value(u"size"_s), body.value(u"size"_s));
        QCOMPARE(m_service.counts().answered, before + 1);
    }

    void membersMayBeMissing()
    {
        const ServiceReply reply = m_client->post(
            QJsonObject{{u"model"_s, u"doubao-seedream-4-0-250828"_s}, {u"prompt"_s, u"海"_s}});
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.data().value(u"size"_s).toString(), u"2048x2048"_s);
        QCOMPARE(reply.data().keys(), (QStringList{u"size"_s, u"url"_s}));
    }

    void badRequestsAreRefused_data()
    {
        const DataRows<QByteArray, QByteArray, QByteArray> row{"body", "key", "type"};
        const QByteArray body = QJsonDocument{ServiceClient::goodBody()}.toJson();
        const QByteArray key = "Bearer local-demo-key";
        const QByteArray type = "application/json";
        row("body empty", {}, key, type);
        row("body no JSON", "hello", key, type);
        row("body truncated", body.chopped(2), key, type);
        row("body a list", "[]", key, type);
        row("body a text", R"("x")", key, type);
        row("body not UTF-8", "{\"model\":\"\xFF\xFE\"}", key, type);
        row("type of plain text", body, key, "text/plain");
        row("type longer", body, key, "application/jsonx");
        row("key missing", body, {}, type);
        row("key another", body, "Bearer other", type);
        row("key longer", body, "Bearer local-demo-key2", type);
        row("key in capitals", body, "Bearer LOCAL-DEMO-KEY", type);
        row("key without scheme", body, "local-demo-key", type);
        row("key of another scheme", body, "Basic local-demo-key", type);
    }

    void badRequestsAreRefused()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const QByteArray, key);
        QFETCH(const QByteArray, type);
        const QString error = key == m_client->key ? u"400 InvalidParameter  BadRequest"_s
                                                   : u"401 AuthenticationError  Unauthorized"_s;
        QCOMPARE(m_client->post(body, key, type).error(), error);
    }

    void theContentTypeMayNameACharset()
    {
        const QByteArray body = QJsonDocument{ServiceClient::goodBody()}.toJson();
        QCOMPARE(m_client->post(body, m_client->key, "Application/JSON; charset=utf-8").status, 200);
    }

    void modelsAreToldApart()
    {
        const ServiceReply unknown =
            m_client->post(ServiceClient::bodyWith(u"model"_s, u"doubao-seedream-9"_s));
        QCOMPARE(unknown.error(), u"404 InvalidEndpointOrModel.NotFound  NotFound"_s);
        QVERIFY(unknown.error(u"message"_s).contains(u"doubao-seedream-9"_s));
        const ServiceReply second =
            m_client->post(ServiceClient::bodyWith(u"model"_s, u"ep-20250101-abcde"_s));
        QCOMPARE(second.status, 200);
        QCOMPARE(second.json().value(u"model"_s).toString(), u"ep-20250101-abcde"_s);
    }

    void otherPathsAndMethodsAreRefused()
    {
        const auto compare = [this](const QByteArray &method, const QString &path, const QString &error) {
            QUrl url = m_service.endpoint();
            url.setPath(path);
            const FailureNote note{method + ' ' + path.toUtf8()};
            QCOMPARE(m_client->send(method, url).error(), error);
        };
        const QString notFound = u"404 NotFound  NotFound"_s;
        const QString notAllowed = u"405 MethodNotAllowed  MethodNotAllowed"_s;
        for (const QString &path : {u"/"_s, u"/api/v3/images"_s, u"/api/v3/images/generations/"_s,
                                    u"/pictures/00.jpg"_s, u"/pictures/../stats.jpg"_s}) {
            compare("GET", path, notFound);
        }
        compare("POST", u"/api/v2/images/generations"_s, notFound);
        for (const QByteArray method : {"GET", "PUT", "DELETE", "PATCH"}) {
            compare(method, u"/api/v3/images/generations"_s, notAllowed);
        }
        compare("POST", u"/stats"_s, notAllowed);
    }

    void pathComesBeforeKeyBeforeJsonBeforeMembersBeforeModel()
    {
        QCOMPARE(m_client->send("POST", m_service.endpoint().resolved(QUrl{u"/elsewhere"_s})).status, 404);
        QCOMPARE(m_client->post("no JSON", "Bearer other", "application/json").status, 401);
        QJsonObject body = ServiceClient::bodyWith(u"model"_s, u"unknown"_s);
        body.insert(u"watermark"_s, 1);
        QCOMPARE(m_client->post(body).error(u"param"_s), u"watermark"_s);
        body.insert(u"watermark"_s, true);
        QCOMPARE(m_client->post(body).status, 404);
    }

    void everyErrorHasARequestIdOfItsOwn()
    {
        const QString first = m_client->post(QJsonObject{}).error(u"message"_s);
        const QString second = m_client->post(QJsonObject{}).error(u"message"_s);
        QVERIFY(first != second);
        QCOMPARE(first.section(u" Request id: "_s, 1).size(), 32);
    }
};

QUILMORA_TEST(RequestRulesTest, runGuiTest)
#include "RequestRulesTest.moc"
