#pragma once

#include "support/ScriptedResponse.h"

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <functional>

class QTcpServer;
class QTcpSocket;

namespace quilmora::test {

/// One request as it came over the wire.
struct ReceivedRequest {
    QByteArray head; ///< Request line and headers, as sent.
    QByteArray body;

    QByteArray method() const { return head.first(head.indexOf(' ')); }
    QByteArray path() const; ///< With its query.

    /// The value of a header without the white space around it, as HTTP reads it; null if it is missing.
    QByteArray header(const QByteArray &name) const;
    /// How many headers of that name came.
    qsizetype headerCount(const QByteArray &name) const;
};

/// An HTTP server on loopback, in a thread of its own, that answers as a test tells it to and keeps what it
/// was sent. Its functions may be called from any thread.
class ScriptedHttpServer final
{
public:
    using Script = std::function<ScriptedResponse(const ReceivedRequest &)>;

    /// Starts to listen, on that port or on one that is free; `script` is called on the server's thread for
    /// every request.
    explicit ScriptedHttpServer(Script script, quint16 port = 0);
    /// Sends that response to every request.
    explicit ScriptedHttpServer(const ScriptedResponse &response);
    Q_DISABLE_COPY_MOVE(ScriptedHttpServer)
    ~ScriptedHttpServer();

    QUrl url(const QString &path = QStringLiteral("/api/v3/images/generations")) const;
    QList<ReceivedRequest> requests() const;
    qsizetype requestCount() const;
    /// Forgets what has come so far.
    void forgetRequests();
    /// How many requests were begun, those without their whole body too.
    int headCount() const { return m_heads; }
    int connectionCount() const { return m_connections; }
    /// How many of them are open now.
    int openConnections() const { return m_open; }
    /// How many bytes of answers have gone out.
    qint64 sentBytes() const { return m_sent; }
    /// Closes every connection on which so much of a request has come; 0 for never.
    void hangUpAfterBytes(qsizetype count) { m_hangUpAfter = count; }
    /// Answers as soon as so much of a request has come, and pays no heed to the rest of it; 0 for never.
    void answerAfterBytes(qsizetype count) { m_answerAfter = count; }

    /// Keeps every answer back until so many requests wait for one; to be called before the first.
    void holdAnswersUntil(qsizetype count) { m_holdUntil = count; }

private:
    struct Connection {
        QByteArray bytes;
        bool headSeen = false;
        bool isAnsweredEarly = false;
    };

    void listen();
    void accept(QTcpSocket *socket);
    void read(QTcpSocket *socket, Connection &connection);
    void answer(QTcpSocket *socket, const ReceivedRequest &request);
    static void send(QTcpSocket *socket, ScriptedResponse answer);

    const Script m_script;
    QThread m_thread;
    QObject m_context; ///< Lives in the thread.
    quint16 m_port;
    std::atomic_int m_heads = 0;
    std::atomic_int m_connections = 0;
    std::atomic_int m_open = 0;
    std::atomic<qint64> m_sent = 0;
    std::atomic<qsizetype> m_hangUpAfter = 0;
    std::atomic<qsizetype> m_answerAfter = 0;
    std::atomic<qsizetype> m_holdUntil = 0;
    QList<std::function<void()>> m_held; ///< Used in the thread only.
    mutable QMutex m_mutex;
    QList<ReceivedRequest> m_received;
};

} // namespace quilmora::test
