#pragma once

#include "generation/GenerationResult.h"

#include <QByteArray>
#include <QUrl>

#include <optional>
#include <variant>

class QNetworkReply;

namespace quilmora {

/// What a request came to: the body of an answer of any HTTP status, nothing at all, or a failed connection.
using HttpOutcome = std::variant<std::monostate, QByteArray, TransportError>;

/// Reads what the finished `reply`, which follows no redirects by itself, came to. An answer with an error
/// status is an answer; a connection that was refused, lost, cut or silent for too long is a failure, and so
/// is a body that cannot be unpacked or is beyond the bound of answers.
HttpOutcome classifyReply(QNetworkReply &reply);

/// Where the finished `reply` sends its request next.
struct Redirect {
    QUrl target;
    bool withBody; ///< To be posted there again; otherwise asked for.
};

/// Nothing if `reply` is no redirect or says of no address to go to, and so is an answer like any other; an
/// error if it leads to another origin, where the key must not go.
std::variant<std::monostate, Redirect, TransportError> readRedirect(const QNetworkReply &reply);

} // namespace quilmora
