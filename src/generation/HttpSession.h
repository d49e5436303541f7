#pragma once

#include "generation/ReplyClassification.h"

#include <QByteArray>
#include <QIODevice>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <functional>
#include <utility>

namespace quilmora {

/// The body of a request that must not be sent twice. QNetworkAccessManager repeats a request whose
/// connection was lost before the response, and rewinds its body for that: this body cannot be rewound, so
/// the request fails.
class NonRewindableBody final : public QIODevice
{
    Q_OBJECT

public:
    explicit NonRewindableBody(QByteArray body) : m_body{std::move(body)} { open(ReadOnly | Unbuffered); }

    qint64 size() const override { return m_body.size(); }

    bool reset() override { return false; }

protected:
    qint64 readData(char *data, qint64 maximum) override;
    qint64 writeData(const char * /*data*/, qint64 /*size*/) override { return -1; }

private:
    const QByteArray m_body;
};

/// Sends requests side by side, each on a connection of its own and never twice. Redirects are followed
/// within the same origin only. To be used from its own thread, which needs an event loop.
class HttpSession final : public QObject
{
    Q_OBJECT

public:
    struct Request {
        QUrl url;
        QByteArray authorization; ///< Value of the header, without line breaks.
        QByteArray body;          ///< JSON.
    };
    using Done = std::function<void(const HttpOutcome &)>;

    /// A connection that transfers nothing for `idleLimit` counts as lost.
    explicit HttpSession(std::chrono::milliseconds idleLimit) : m_idleLimit{idleLimit} {}

    /// Calls `done` exactly once, on this object's thread, unless the session is destroyed before.
    void post(const Request &request, const Done &done)
    {
        send(Method::post, request, maximumRedirects, done);
    }

private:
    static constexpr int maximumRedirects = 10;
    enum class Method { get, post };

    void send(Method method, const Request &request, int redirectsLeft, const Done &done);

    const std::chrono::milliseconds m_idleLimit;
};

} // namespace quilmora
