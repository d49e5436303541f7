#pragma once

#include "support/ScriptedHttpServer.h"

#include <QByteArray>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslServer>
#include <QString>

namespace quilmora::test {

/// A server with TLS on loopback, in the thread of its maker, that sends a picture to every request.
class TlsServer final
{
public:
    /// Who it says it is, and since when until when; moments as certificates write them.
    struct Identity {
        QString subject = QStringLiteral("IP:127.0.0.1");
        QString notBefore = QStringLiteral("20200101000000Z");
        QString notAfter = QStringLiteral("20490101000000Z");
    };

    /// Makes a certificate, and an authority that vouches for it; the test program ends when that fails.
    explicit TlsServer(const Identity &identity);
    TlsServer() : TlsServer{Identity{}} {}
    Q_DISABLE_COPY_MOVE(TlsServer)
    ~TlsServer() = default;

    quint16 port() const { return m_server.serverPort(); }
    QString url() const { return QStringLiteral("https://127.0.0.1:") + QString::number(port()); }
    const QSslCertificate &authority() const { return m_voucher; }
    /// Everything that it was sent, decrypted.
    ReceivedRequest request() const { return {m_bytes, {}}; }
    int handshakes() const { return m_begun; }

private:
    void respond(QSslSocket *socket);

    QSslServer m_server;
    QSslCertificate m_voucher;
    QByteArray m_bytes;
    int m_begun = 0;
};

/// For as long as it exists, whatever that authority vouches for is trusted.
class TrustedAuthority final
{
public:
    explicit TrustedAuthority(const QSslCertificate &authority);
    Q_DISABLE_COPY_MOVE(TrustedAuthority)
    ~TrustedAuthority();

private:
    const QSslConfiguration m_former;
};

} // namespace quilmora::test
