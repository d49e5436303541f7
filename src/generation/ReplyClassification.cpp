#include "generation/ReplyClassification.h"

#include "generation/ResponseSizeLimit.h"

#include <QCoreApplication>
#include <QNetworkReply>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

int statusOf(const QNetworkReply &reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

/// Whether the answer asks for the body to be posted once more elsewhere.
bool repeatsTheBody(const QNetworkReply &reply)
{
    return statusOf(reply) == 307 || statusOf(reply) == 308;
}

/// How many bytes of body were promised; nothing if that is not said, or not by a length that can be.
std::optional<qint64> promisedLength(const QNetworkReply &reply)
{
    bool isNumber = false;
    const qint64 length = reply.rawHeader("Content-Length").toLongLong(&isNumber);
    // Chunks tell their end themselves, whatever length is said beside them.
    if (!isNumber || length < 0 || reply.hasRawHeader("Transfer-Encoding")) {
        return std::nullopt;
    }
    return length;
}

/// Whether an answer has begun that tells its end by closing the connection.
bool endsWithTheConnection(const QNetworkReply &reply)
{
    return statusOf(reply) >= 200 && !promisedLength(reply) && !reply.hasRawHeader("Transfer-Encoding");
}

/// By the class of the error, which is set for answers with an error status as well.
bool isAnswer(const QNetworkReply &reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return true;
    case QNetworkReply::ContentReSendError:
        // At times QNetworkAccessManager takes the close that ends an answer for a lost connection. For some
        // redirects it rewinds the body even if it is not to follow them, and is refused that; it does not
        // say whether their chunks came to an end.
        return endsWithTheConnection(reply) || repeatsTheBody(reply);
    case QNetworkReply::ProxyAuthenticationRequiredError: // 407, if the server says so itself
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
    // Without a status the connection failed, and with a good one the body could not be unpacked.
    return statusOf(reply) >= 400;
}

/// Whether less has come than was promised, which QNetworkAccessManager does not always notice. Two kinds of
/// answer have no body, whatever length they name.
bool isCut(const QNetworkReply &reply, const QByteArray &body)
{
    return statusOf(reply) != 204 && statusOf(reply) != 304 &&
           body.size() < promisedLength(reply).value_or(0);
}

QString connectionClosed()
{
    return QCoreApplication::translate("QHttp", "Connection closed");
}

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
        // Nothing cancels a request but the bound of answers and the idle limit, which QNetworkAccessManager
        // reports as a cancellation.
        return responseSizeLimit::isExceeded(reply)
                   ? QCoreApplication::translate("QHttp", "Data downloaded is too large to store")
                   : u"请求超时"_s;
    case QNetworkReply::TimeoutError:
        // The idle limit, as Qt 6.11 reports it, with an English text.
        return u"请求超时"_s;
    case QNetworkReply::ContentReSendError:
        // The connection was lost and the body not sent again.
        return connectionClosed();
    case QNetworkReply::SslHandshakeFailedError:
        return withoutLibraryReason(reply.errorString());
    case QNetworkReply::UnknownNetworkError:
        // So it calls a connection that ends while the request is being sent.
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

HttpOutcome classifyReply(QNetworkReply &reply)
{
    // First of all: a body that cannot be unpacked becomes an error only as it is read.
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
