#include "support/ScriptedHttpServer.h"

#include <QNetworkProxyFactory>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <sys/socket.h>
#include <utility>

namespace quilmora::test {
namespace {

/// How much of an answer may wait to be taken before more of it is written.
constexpr qint64 mostWaiting = 4'000'000;

/// Closes the connection at once and so that the other side sees it torn down.
void tearDown(QTcpSocket &socket)
{
    const linger none{1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    socket.abort();
}

} // namespace

QByteArray ReceivedRequest::header(const QByteArray &name) const
{
    const QList<QByteArray> lines = head.split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).compare(name, Qt::CaseInsensitive) == 0) {
            return line.sliced(colon + 1).trimmed();
        }
    }
    return {};
}

QByteArray ReceivedRequest::path() const { return head.split(' ').value(1); }

qsizetype ReceivedRequest::headerCount(const QByteArray &name) const
{
    const QList<QByteArray> lines = head.split('\n');
    return std::count_if(lines.begin(), lines.end(), [&name](const QByteArray &line) {
        return line.first(std::max<qsizetype>(0, line.indexOf(':'))).compare(name, Qt::CaseInsensitive) == 0;
    });
}

ScriptedHttpServer::ScriptedHttpServer(Script script, quint16 wantedPort)
    : m_script{std::move(script)},
      m_port{wantedPort}
{
    // Whatever proxy this machine has, tests speak to their server directly.
    QNetworkProxyFactory::setUseSystemConfiguration(false);
    m_context.moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        &m_context, [this] { listen(); }, Qt::BlockingQueuedConnection);
}

ScriptedHttpServer::ScriptedHttpServer(const ScriptedResponse &response)
    : ScriptedHttpServer{[response](const ReceivedRequest &) {
          return response;
      }}
{
}

ScriptedHttpServer::~ScriptedHttpServer()
{
    // Deleted in its own thread, with the server and its sockets.
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            const QObjectList children = m_context.children();
            qDeleteAll(children);
            m_context.moveToThread(nullptr);
        },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void ScriptedHttpServer::listen()
{
    auto *server = new QTcpServer{&m_context};
    if (!server->listen(QHostAddress::LocalHost, m_port)) {
        qFatal("Cannot listen on loopback");
    }
    m_port = server->serverPort();
    QObject::connect(server, &QTcpServer::newConnection, &m_context, [this, server] {
        while (QTcpSocket *socket = server->nextPendingConnection()) {
            accept(socket);
        }
    });
}

void ScriptedHttpServer::accept(QTcpSocket *socket)
{
    ++m_connections;
    ++m_open;
    auto connection = std::make_shared<Connection>();
    QObject::connect(socket, &QTcpSocket::readyRead, &m_context,
                     [this, socket, connection] { read(socket, *connection); });
    QObject::connect(socket, &QTcpSocket::bytesWritten, &m_context,
                     [this](qint64 count) { m_sent += count; });
    QObject::connect(socket, &QTcpSocket::disconnected, &m_context, [this, socket] {
        --m_open;
        socket->deleteLater();
    });
}

void ScriptedHttpServer::read(QTcpSocket *socket, Connection &connection)
{
    connection.bytes += socket->readAll();
    if (connection.isAnsweredEarly) {
        connection.bytes.clear();
        return;
    }
    const qsizetype headEnd = connection.bytes.indexOf("\r\n\r\n");
    if (headEnd < 0) {
        return;
    }
    m_heads += std::exchange(connection.headSeen, true) ? 0 : 1;
    if (m_hangUpAfter > 0 && connection.bytes.size() >= m_hangUpAfter) {
        tearDown(*socket);
        return;
    }
    ReceivedRequest request{connection.bytes.first(headEnd + 2), {}};
    if (m_answerAfter > 0 && connection.bytes.size() >= m_answerAfter) {
        connection.isAnsweredEarly = true;
        answer(socket, request);
        return;
    }
    const qsizetype length = request.header("Content-Length").toLongLong();
    if (connection.bytes.size() < headEnd + 4 + length) {
        return;
    }
    request.body = connection.bytes.sliced(headEnd + 4, length);
    connection = {};
    answer(socket, request);
}

void ScriptedHttpServer::answer(QTcpSocket *socket, const ReceivedRequest &request)
{
    {
        const QMutexLocker lock{&m_mutex};
        m_received.append(request);
    }
    m_held.append([this, socket = QPointer{socket}, request] {
        if (socket) {
            send(socket, m_script(request));
        }
    });
    if (m_held.size() >= m_holdUntil) {
        m_holdUntil = 0;
        for (const auto &release : std::exchange(m_held, {})) {
            release();
        }
    }
}

void ScriptedHttpServer::send(QTcpSocket *socket, ScriptedResponse answer)
{
    if (answer.pieces.isEmpty()) {
        if (answer.end == ScriptedResponse::End::close) {
            socket->disconnectFromHost();
        } else if (answer.end == ScriptedResponse::End::reset) {
            tearDown(*socket);
        }
        return;
    }
    const ScriptedResponse::Piece piece = answer.pieces.takeFirst();
    QTimer::singleShot(piece.pauseBefore, socket, [socket, piece, answer] {
        socket->write(piece.bytes);
        if (socket->bytesToWrite() < mostWaiting) {
            send(socket, answer);
            return;
        }
        QObject::connect(
            socket, &QTcpSocket::bytesWritten, socket, [socket, answer] { send(socket, answer); },
            Qt::SingleShotConnection);
    });
}

QUrl ScriptedHttpServer::url(const QString &path) const
{
    QUrl address;
    address.setScheme(QStringLiteral("http"));
    address.setHost(QStringLiteral("127.0.0.1"));
    address.setPort(m_port);
    address.setPath(path);
    return address;
}

QList<ReceivedRequest> ScriptedHttpServer::requests() const
{
    const QMutexLocker lock{&m_mutex};
    return m_received;
}

qsizetype ScriptedHttpServer::requestCount() const { return requests().size(); }

void ScriptedHttpServer::forgetRequests()
{
    const QMutexLocker lock{&m_mutex};
    m_received.clear();
}

} // namespace quilmora::test
