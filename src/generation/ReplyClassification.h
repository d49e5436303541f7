#pragma once

#include "generation/GenerationResult.h"

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <variant>

class QNetworkReply;

/// The largest body of a response, and of a picture that is downloaded from an address in it.
namespace quilmora::responseSizeLimit {

/// Of a decompressed body. The largest cover, as RGBA with 16 bits a sample, takes 49 million.
constexpr qint64 maximumBytes = qint64{64} * 1024 * 1024;

/// Aborts `reply` once its length or its data exceeds the limit. To be called before data arrives.
void apply(QNetworkReply &reply);

} // namespace quilmora::responseSizeLimit

namespace quilmora {

/// The outcome of a request: the body of a response of any HTTP status, nothing at all, or a failed
/// connection.
using HttpOutcome = std::variant<std::monostate, QByteArray, TransportError>;

/// The outcome of the finished `reply`, which must not follow redirects by itself. A truncated body, one that
/// cannot be decompressed and one beyond the size limit count as a failed connection.
HttpOutcome classifyReply(QNetworkReply &reply);

/// The target of a redirect.
struct Redirect {
    QUrl target;
    bool withBody; ///< Whether to POST the body again; otherwise GET.
};

/// Of the finished `reply`. Nothing if it is no redirect or has no address; an error if it leads to another
/// origin, which must not get the key.
std::variant<std::monostate, Redirect, TransportError> readRedirect(const QNetworkReply &reply);

} // namespace quilmora
