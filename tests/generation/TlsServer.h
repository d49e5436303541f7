#pragma once

#include "generation/GenerationProbe.h"

#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

namespace quilmora::test {

using namespace Qt::StringLiterals;

inline const QByteArray authorityRules = R"([ca]
default_ca = own
[own]
database = index.txt
serial = serial
new_certs_dir = .
default_md = sha256
policy = any
copy_extensions = copy
[any]
commonName = supplied
)";

/// Runs openssl with the arguments, which are separated by blanks.
inline void openssl(const QString &folder, const QString &arguments)
{
    QProcess program;
    program.setWorkingDirectory(folder);
    program.start(u"openssl"_s, arguments.split(u' '));
    if (!program.waitForFinished() || program.exitCode() != 0) {
        qFatal("openssl: %s", program.readAllStandardError().constData());
    }
}

/// The arguments that make a key and a request for a certificate of that name.
inline QString newKey(const QString &name)
{
    return u"req -new -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=%1 "
           "-keyout %1.key -out %1.pem"_s.arg(name);
}

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
    explicit TlsServer(const Identity &identity)
    {
        const QTemporaryDir folder;
        samplePictures::write(folder.filePath(u"authority.conf"_s), authorityRules);
        samplePictures::write(folder.filePath(u"index.txt"_s), {});
        samplePictures::write(folder.filePath(u"serial"_s), "01\n");
        openssl(folder.path(), newKey(u"authority"_s) + u" -x509 -days 2"_s);
        openssl(folder.path(), newKey(u"server"_s) + u" -addext subjectAltName="_s + identity.subject);
        openssl(folder.path(),
                u"ca -config authority.conf -batch -notext -cert authority.pem -keyfile authority.key "
                "-in server.pem -out certificate.pem -startdate %1 -enddate %2"_s.arg(identity.notBefore,
                                                                                      identity.notAfter));
        m_voucher = QSslCertificate::fromPath(folder.filePath(u"authority.pem"_s)).value(0);
        const auto certificate = QSslCertificate::fromPath(folder.filePath(u"certificate.pem"_s)).value(0);
        QFile key{folder.filePath(u"server.key"_s)};
        key.open(QIODevice::ReadOnly);
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(certificate);
        configuration.setPrivateKey(QSslKey{&key, QSsl::Ec});
        m_server.setSslConfiguration(configuration);
        QObject::connect(&m_server, &QSslServer::startedEncryptionHandshake, &m_server,
                         [this](QSslSocket *socket) {
                             ++m_begun;
                             respond(socket);
                         });
        if (certificate.isNull() || !m_server.listen(QHostAddress::LocalHost)) {
            qFatal("No server with TLS");
        }
    }
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
    void respond(QSslSocket *socket)
    {
        // Not to the server itself, which ends every connection of its own to the socket after the handshake.
        QObject::connect(socket, &QSslSocket::readyRead, socket, [this, socket] {
            m_bytes += socket->readAll();
            if (m_bytes.contains("\r\n\r\n") && m_bytes.endsWith('}')) {
                socket->write(pictureResponse().pieces.first().bytes);
                socket->disconnectFromHost();
            }
        });
    }

    QSslServer m_server;
    QSslCertificate m_voucher;
    QByteArray m_bytes;
    int m_begun = 0;
};

/// For as long as it exists, whatever that authority vouches for is trusted.
class TrustedAuthority final
{
public:
    explicit TrustedAuthority(const QSslCertificate &authority)
        : m_former{QSslConfiguration::defaultConfiguration()}
    {
        QSslConfiguration trusting = m_former;
        trusting.addCaCertificate(authority);
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    Q_DISABLE_COPY_MOVE(TrustedAuthority)
    ~TrustedAuthority() { QSslConfiguration::setDefaultConfiguration(m_former); }

private:
    const QSslConfiguration m_former;
};

} // namespace quilmora::test
