#pragma once

#include "generation/ReplyClassification.h"

#include <QByteArray>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <functional>

namespace quilmora {

/// Sends the requests of the application. Requests run side by side, each on a connection of its own, and are
/// never repeated; redirects are followed within the same origin only. Belongs to one thread with an event
/// loop; every function is to be called there.
class HttpSession final : public QObject
{
    Q_OBJECT

public:
    struct Request {
        QUrl url;
        QByteArray authorization; ///< Value of the header; holds no line break.
        QByteArray body;          ///< JSON.
    };
    using Done = std::function<void(const HttpOutcome &)>;

    /// A connection on which nothing moves for `idleLimit` counts as lost.
    explicit HttpSession(std::chrono::milliseconds idleLimit);

    /// Posts `request` and calls `done` exactly once, on this object's thread, unless the session is
    /// destroyed before.
    void post(const Request &request, const Done &done);

private:
    enum class Method { get, post };

    void send(Method method, const Request &request, int redirectsLeft, const Done &done);

    const std::chrono::milliseconds m_idleLimit;
};

} // namespace quilmora
