#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>

#include <memory>
#include <utility>

namespace quilmora::test {

using namespace Qt::StringLiterals;

/// A response of the service.
struct ServiceReply {
    int status = 0; ///< 0 when none came.
    QByteArray contentType;
    QByteArray body;

    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
    /// Status, code, parameter and type of the error envelope, with one blank between; else what is wrong
    /// with it.
    QString error() const
    {
        const QStringList members = json().value(u"error"_s).toObject().keys();
        if (json().size() != 1 || members != QStringList{u"code"_s, u"message"_s, u"param"_s, u"type"_s} ||
            !contentType.startsWith("application/json") ||
            !error(u"message"_s).contains(u" Request id: "_s)) {
            return u"no error envelope: "_s + QString::fromUtf8(contentType + ' ' + body);
        }
        return u"%1 %2 %3 %4"_s.arg(QString::number(status), error(u"code"_s), error(u"param"_s),
                                    error(u"type"_s));
    }
    /// A text member of the error envelope.
    QString error(const QString &member) const
    {
        return json().value(u"error"_s).toObject().value(member).toString();
    }
    /// The first element of "data".
    QJsonObject data() const { return json().value(u"data"_s).toArray().at(0).toObject(); }
    /// The decoded bytes of the first element's "b64_json".
    QByteArray picture() const
    {
        return QByteArray::fromBase64(data().value(u"b64_json"_s).toString().toLatin1());
    }
};

/// Sends requests to an image service as a program would. Every call waits for its response, but those named
/// "later".
class ServiceClient final
{
public:
    explicit ServiceClient(QUrl endpoint) : m_endpoint{std::move(endpoint)} {}
    ~ServiceClient() = default;
    Q_DISABLE_COPY_MOVE(ServiceClient)

    /// A request for the smallest cover there is.
    static QJsonObject goodBody()
    {
        return {{u"model"_s, u"doubao-seedream-4-0-250828"_s},
                {u"prompt"_s, u"生成一张视频封面图。"_s},
                {u"size"_s, u"1280x720"_s},
                {u"response_format"_s, u"b64_json"_s},
                {u"watermark"_s, false},
                {u"sequential_image_generation"_s, u"disabled"_s}};
    }
    /// The same, but for one member.
    static QJsonObject bodyWith(const QString &member, const QJsonValue &value)
    {
        QJsonObject body = goodBody();
        body.insert(member, value);
        return body;
    }

    ServiceReply post(const QJsonObject &body)
    {
        return post(QJsonDocument{body}.toJson(QJsonDocument::Compact), key, "application/json");
    }
    /// Sends the headers as given; an empty one is left out.
    ServiceReply post(const QByteArray &body, const QByteArray &authorization, const QByteArray &contentType)
    {
        QNetworkRequest request{m_endpoint};
        if (!authorization.isEmpty()) {
            request.setRawHeader("Authorization", authorization);
        }
        request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
        return finish(m_network.post(request, body));
    }
    ServiceReply get(const QUrl &url) { return finish(m_network.get(QNetworkRequest{url})); }
    ServiceReply send(const QByteArray &method, const QUrl &url)
    {
        QNetworkRequest request{url};
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray{"application/json"});
        return finish(m_network.sendCustomRequest(request, method, QByteArray{"{}"}));
    }
    std::unique_ptr<QNetworkReply> postLater(const QJsonObject &body)
    {
        QNetworkRequest request{m_endpoint};
        request.setRawHeader("Authorization", key);
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray{"application/json"});
        return std::unique_ptr<QNetworkReply>{
            m_network.post(request, QJsonDocument{body}.toJson(QJsonDocument::Compact))};
    }
    /// The response of `reply`, which must have finished.
    static ServiceReply replyOf(QNetworkReply &reply)
    {
        return {reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                reply.header(QNetworkRequest::ContentTypeHeader).toByteArray(), reply.readAll()};
    }

    QByteArray key = "Bearer local-demo-key";

private:
    static constexpr int longest = 60'000;

    static ServiceReply finish(QNetworkReply *raw)
    {
        const std::unique_ptr<QNetworkReply> reply{raw};
        QSignalSpy finished{reply.get(), &QNetworkReply::finished};
        if (!reply->isFinished() && !finished.wait(longest)) {
            return {};
        }
        return replyOf(*reply);
    }

    QUrl m_endpoint;
    QNetworkAccessManager m_network;
};

/// `bytes` as the text of a data address.
inline QString dataUrl(const QByteArray &bytes, const QString &kind)
{
    return u"data:image/"_s + kind + u";base64,"_s + QString::fromLatin1(bytes.toBase64());
}

} // namespace quilmora::test
