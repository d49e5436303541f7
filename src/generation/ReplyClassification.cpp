#include "generation/ReplyClassification.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Marks an aborted reply; QNetworkReply has no reason of an abort.
constexpr const char *exceedsLimit = "exceedsResponseSizeLimit";

void abortBeyondLimit(QNetworkReply &reply, qint64 bytes)
{
    if (bytes > responseSizeLimit::maximumBytes && reply.error() == QNetworkReply::NoError) {
        reply.setProperty(exceedsLimit, true);
        reply.abort();
    }
}

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

/// Whether the redirect repeats the request with its body.
bool repeatsTheBody(const QNetworkReply &reply) { return statusOf(reply) == 307 || statusOf(reply) == 308; }

/// The length of the body; nothing if the header has none or an invalid one.
std::optional<qint64> promisedLength(const QNetworkReply &reply)
{
    bool isNumber = false;
    const qint64 length = reply.rawHeader("Content-Length").toLongLong(&isNumber);
    // A chunked body ends with its last chunk; its Content-Length is ignored.
    if (!isNumber || length < 0 || reply.hasRawHeader("Transfer-Encoding")) {
        return std::nullopt;
    }
    return length;
}

/// Whether a response has been received in part that ends with the connection.
bool endsWithTheConnection(const QNetworkReply &reply)
{
    return statusOf(reply) >= 200 && !promisedLength(reply) && !reply.hasRawHeader("Transfer-Encoding");
}

/// By the kind of the error, which is set for responses with an error status as well.
bool isAnswer(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return true;
    case QNetworkReply::ContentReSendError:
        // QNetworkAccessManager sometimes reports the close that ends a response as a lost connection. For
        // some redirects it rewinds the body even if it does not follow them.
        return endsWithTheConnection(reply) || repeatsTheBody(reply);
    case QNetworkReply::ProxyAuthenticationRequiredError: // 407 from the server itself
    case QNetworkReply::ProtocolInvalidOperationError:    // 400, 418
        break;
    default:
        const bool isStatusError = (reply.error() >= QNetworkReply::ContentAccessDenied &&
                                    reply.error() <= QNetworkReply::UnknownContentError) ||
                                   reply.error() >= QNetworkReply::InternalServerError;
        if (!isStatusError) {
            return false;
        }
    }
    // Without a status the connection failed; with a successful one the body could not be decompressed.
    return statusOf(reply) >= 400;
}

/// QNetworkAccessManager does not always report this. Two kinds of response have no body at any length.
bool isCut(const QNetworkReply &reply, const QByteArray &body)
{
    return statusOf(reply) != 204 && statusOf(reply) != 304 &&
           body.size() < promisedLength(reply).value_or(0);
}

QString connectionClosed() { return QCoreApplication::translate("QHttp", "Connection closed"); }

/// `text` without the English words of the TLS library or of a compression library at its end.
QString withoutLibraryReason(const QString &text)
{
    static const QRegularExpression reason{
        uR"([:：,，]?\s*(error:[0-9A-Fa-f]+:|(Brotli|ZStandard) error:).*$)"_s};
    return QString{text}.remove(reason);
}

/// `text` without the colon before a reason that QNetworkAccessManager does not know.
QString withoutEmptyReason(const QString &text)
{
    static const QRegularExpression colon{u"[:：]\\s*$"_s};
    return QString{text}.remove(colon);
}

QString transportErrorText(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::OperationCanceledError:
        // By the size limit or the idle limit; nothing else cancels a request.
        return reply.property(exceedsLimit).toBool()
                   ? QCoreApplication::translate("QHttp", "Data downloaded is too large to store")
                   : u"请求超时"_s;
    case QNetworkReply::TimeoutError:
        // The idle limit, as Qt 6.11 reports it, with an English text.
        return u"请求超时"_s;
    case QNetworkReply::ContentReSendError:
        // The connection was lost and the body was not sent again.
        return connectionClosed();
    case QNetworkReply::SslHandshakeFailedError:
        return withoutLibraryReason(reply.errorString());
    case QNetworkReply::UnknownNetworkError:
        // The error of a connection that is closed while the request is being sent.
        if (reply.errorString() == QCoreApplication::translate("QNativeSocketEngine", "Unknown error")) {
            return connectionClosed();
        }
        return reply.errorString();
    default:
        return withoutEmptyReason(withoutLibraryReason(reply.errorString()));
    }
}

bool hasSameOrigin(const QUrl &one, const QUrl &other)
{
    const int standardPort = one.scheme() == u"https"_s ? 443 : 80;
    return one.scheme() == other.scheme() && one.host() == other.host() &&
           one.port(standardPort) == other.port(standardPort);
}

} // namespace

void responseSizeLimit::apply(QNetworkReply &reply)
{
    QObject::connect(&reply, &QNetworkReply::metaDataChanged, &reply, [&reply] {
        abortBeyondLimit(reply, reply.header(QNetworkRequest::ContentLengthHeader).toLongLong());
    });
    QObject::connect(&reply, &QNetworkReply::readyRead, &reply,
                     [&reply] { abortBeyondLimit(reply, reply.bytesAvailable()); });
}

HttpOutcome classifyReply(QNetworkReply &reply)
{
    // Read first: a decompression error is set only by reading.
    const QByteArray body = reply.isReadable() ? reply.readAll() : QByteArray{};
    if (!isAnswer(reply)) {
        return TransportError{transportErrorText(reply)};
    }
    if (isCut(reply, body)) {
        return TransportError{connectionClosed()};
    }
    if (statusOf(reply) == 0 && body.isEmpty()) {
        return std::monostate{};
    }
    return body;
}

std::variant<std::monostate, Redirect, TransportError> readRedirect(const QNetworkReply &reply)
{
    const int status = statusOf(reply);
    const bool withBody = repeatsTheBody(reply);
    if (!isAnswer(reply) || !(withBody || status == 301 || status == 302 || status == 303)) {
        return {};
    }
    const QUrl location = QUrl::fromEncoded(reply.rawHeader("Location"));
    const QUrl target = reply.url().resolved(location);
    if (location.isEmpty() || !target.isValid()) {
        return {};
    }
    if (!hasSameOrigin(reply.url(), target)) {
        return TransportError{QCoreApplication::translate("QHttp", "Insecure redirect")};
    }
    return Redirect{target, withBody};
}

} // namespace quilmora
