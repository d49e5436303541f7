#include "generation/TlsServer.h"

#include "generation/GenerationProbe.h"

#include <QProcess>
#include <QSslKey>
#include <QSslSocket>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

const QByteArray authorityRules = R"([ca]
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

QByteArray contentOf(const QString &path)
{
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

/// Runs openssl with the arguments, which are separated by blanks.
void openssl(const QString &folder, const QString &arguments)
{
    QProcess program;
    program.setWorkingDirectory(folder);
    program.start(u"openssl"_s, arguments.split(u' '));
    if (!program.waitForFinished() || program.exitCode() != 0) {
        qFatal("openssl: %s", program.readAllStandardError().constData());
    }
}

/// The arguments that make a key and a request for a certificate of that name.
QString newKey(const QString &name)
{
    return u"req -new -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=%1 "
           "-keyout %1.key -out %1.pem"_s.arg(name);
}

} // namespace

TlsServer::TlsServer(const Identity &identity)
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
    m_voucher = QSslCertificate{contentOf(folder.filePath(u"authority.pem"_s))};
    const QSslCertificate certificate{contentOf(folder.filePath(u"certificate.pem"_s))};
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate);
    configuration.setPrivateKey(QSslKey{contentOf(folder.filePath(u"server.key"_s)), QSsl::Ec});
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

void TlsServer::respond(QSslSocket *socket)
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

TrustedAuthority::TrustedAuthority(const QSslCertificate &authority)
    : m_former{QSslConfiguration::defaultConfiguration()}
{
    QSslConfiguration trusting = m_former;
    trusting.addCaCertificate(authority);
    QSslConfiguration::setDefaultConfiguration(trusting);
}

TrustedAuthority::~TrustedAuthority()
{
    QSslConfiguration::setDefaultConfiguration(m_former);
}

} // namespace quilmora::test
