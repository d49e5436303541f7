#pragma once

#include <QByteArray>
#include <QImage>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QUrl>

#include <memory>

class QNetworkReply;

namespace quilmora::test {

/// What the service answered.
struct ServiceReply {
    int status = 0; ///< 0 when no answer came.
    QByteArray contentType;
    QByteArray body;

    QJsonObject json() const;
    /// Status, code, parameter and type of the error envelope, with one blank between; else what is wrong
    /// with it.
    QString error() const;
    /// A text member of the error envelope.
    QString error(const QString &member) const;
    /// The first element of "data".
    QJsonObject data() const;
    /// The decoded bytes of the first element's "b64_json".
    QByteArray picture() const;
};

/// Sends requests to an image service as a program would. Every call waits for its answer, but those named
/// "later".
class ServiceClient final
{
public:
    explicit ServiceClient(QUrl endpoint);
    ~ServiceClient();
    Q_DISABLE_COPY_MOVE(ServiceClient)

    /// A request that the service must answer with the smallest cover there is.
    static QJsonObject goodBody();

    ServiceReply post(const QJsonObject &body);
    /// Sends the headers as given; an empty one is left out.
    ServiceReply post(const QByteArray &body, const QByteArray &authorization, const QByteArray &contentType);
    ServiceReply get(const QUrl &url);
    ServiceReply send(const QByteArray &method, const QUrl &url);
    std::unique_ptr<QNetworkReply> postLater(const QJsonObject &body);
    /// The answer of `reply`, which must have finished.
    static ServiceReply answerOf(QNetworkReply &reply);

    QByteArray key = "Bearer local-demo-key";

private:
    QUrl m_endpoint;
    QNetworkAccessManager m_network;
};

/// `bytes` as the text of a data address.
QString dataUrl(const QByteArray &bytes, const QString &kind);

} // namespace quilmora::test
