#include "tools/ServiceClient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSignalSpy>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

constexpr int longest = 60'000;

ServiceReply finish(QNetworkReply *raw)
{
    const std::unique_ptr<QNetworkReply> reply{raw};
    QSignalSpy finished{reply.get(), &QNetworkReply::finished};
    if (!reply->isFinished() && !finished.wait(longest)) {
        return {};
    }
    return ServiceClient::answerOf(*reply);
}

} // namespace

QJsonObject ServiceReply::json() const
{
    return QJsonDocument::fromJson(body).object();
}

QString ServiceReply::error() const
{
    const QStringList members = json().value(u"error"_s).toObject().keys();
    if (json().size() != 1 || members != QStringList{u"code"_s, u"message"_s, u"param"_s, u"type"_s} ||
        !contentType.startsWith("application/json") || !error(u"message"_s).contains(u" Request id: "_s)) {
        return u"no error envelope: "_s + QString::fromUtf8(contentType + ' ' + body);
    }
    return u"%1 %2 %3 %4"_s.arg(QString::number(status), error(u"code"_s), error(u"param"_s),
                                error(u"type"_s));
}

QString ServiceReply::error(const QString &member) const
{
    return json().value(u"error"_s).toObject().value(member).toString();
}

QJsonObject ServiceReply::data() const
{
    return json().value(u"data"_s).toArray().at(0).toObject();
}

QByteArray ServiceReply::picture() const
{
    return QByteArray::fromBase64(data().value(u"b64_json"_s).toString().toLatin1());
}

ServiceClient::ServiceClient(QUrl endpoint) : m_endpoint{std::move(endpoint)} {}

ServiceClient::~ServiceClient() = default;

QJsonObject ServiceClient::goodBody()
{
    return {{u"model"_s, u"doubao-seedream-4-0-250828"_s},
            {u"prompt"_s, u"生成一张视频封面图。"_s},
            {u"size"_s, u"1280x720"_s},
            {u"response_format"_s, u"b64_json"_s},
            {u"watermark"_s, false},
            {u"sequential_image_generation"_s, u"disabled"_s}};
}

ServiceReply ServiceClient::post(const QJsonObject &body)
{
    return post(QJsonDocument{body}.toJson(QJsonDocument::Compact), key, "application/json");
}

ServiceReply ServiceClient::post(const QByteArray &body, const QByteArray &authorization,
                                 const QByteArray &contentType)
{
    QNetworkRequest request{m_endpoint};
    if (!authorization.isEmpty()) {
        request.setRawHeader("Authorization", authorization);
    }
    request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    return finish(m_network.post(request, body));
}

ServiceReply ServiceClient::get(const QUrl &url)
{
    return finish(m_network.get(QNetworkRequest{url}));
}

ServiceReply ServiceClient::send(const QByteArray &method, const QUrl &url)
{
    QNetworkRequest request{url};
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray{"application/json"});
    return finish(m_network.sendCustomRequest(request, method, QByteArray{"{}"}));
}

std::unique_ptr<QNetworkReply> ServiceClient::postLater(const QJsonObject &body)
{
    QNetworkRequest request{m_endpoint};
    request.setRawHeader("Authorization", key);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray{"application/json"});
    return std::unique_ptr<QNetworkReply>{
        m_network.post(request, QJsonDocument{body}.toJson(QJsonDocument::Compact))};
}

ServiceReply ServiceClient::answerOf(QNetworkReply &reply)
{
    return {reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            reply.header(QNetworkRequest::ContentTypeHeader).toByteArray(), reply.readAll()};
}

QString dataUrl(const QByteArray &bytes, const QString &kind)
{
    return u"data:image/"_s + kind + u";base64,"_s + QString::fromLatin1(bytes.toBase64());
}

} // namespace quilmora::test
