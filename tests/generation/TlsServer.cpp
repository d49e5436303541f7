#include "generation/TlsServer.h"

#include "generation/GenerationProbe.h"

#include <QProcess>
#include <QSslKey>
#include <QSslSocket>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace quilmora::test
{
namespace
{

const QByteArray authorityRules = "[ca]\n"
                                  "default_ca = own\n"
                                  "[own]\n"
                                  "database = index.txt\n"
                                  "serial = serial\n"
                                  "new_certs_dir = .\n"
                                  "default_md = sha256\n"
                                  "policy = any\n"
                                  "copy_extensions = copy\n"
                                  "[any]\n"
                                  "commonName = supplied\n";

QByteArray contentOf(const QString &path)
{
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

void openssl(const QString &folder, const QStringList &arguments)
{
    QProcess program;
    program.setWorkingDirectory(folder);
    program.start(u"openssl"_s, arguments);
    if (!program.waitForFinished() || program.exitCode() != 0) {
        qFatal("openssl: %s", program.readAllStandardError().constData());
    }
}

/// What makes a key, and a request for a certificate of that name.
QStringList newKey(const QString &name)
{
    return {u"req"_s,        u"-new"_s,        u"-newkey"_s,
            u"ec"_s,         u"-pkeyopt"_s,    u"ec_paramgen_curve:prime256v1"_s,
            u"-nodes"_s,     u"-subj"_s,       u"/CN=quilmora "_s + name,
            u"-keyout"_s,    name + u".key"_s, u"-out"_s,
            name + u".pem"_s};
}

} // namespace

TlsServer::TlsServer(const Identity &identity)
{
    const QTemporaryDir folder;
    samplePictures::write(folder.filePath(u"authority.conf"_s), authorityRules);
    samplePictures::write(folder.filePath(u"index.txt"_s), {});
    samplePictures::write(folder.filePath(u"serial"_s), "01\n");
    openssl(folder.path(), newKey(u"authority"_s) + QStringList{u"-x509"_s, u"-days"_s, u"2"_s});
    openssl(folder.path(),
            newKey(u"server"_s) + QStringList{u"-addext"_s, u"subjectAltName="_s + identity.subject});
    openssl(folder.path(),
            {u"ca"_s, u"-config"_s, u"authority.conf"_s, u"-batch"_s, u"-notext"_s, u"-cert"_s,
             u"authority.pem"_s, u"-keyfile"_s, u"authority.key"_s, u"-in"_s, u"server.pem"_s, u"-out"_s,
             u"certificate.pem"_s, u"-startdate"_s, identity.notBefore, u"-enddate"_s, identity.notAfter});
    voucher = QSslCertificate{contentOf(folder.filePath(u"authority.pem"_s))};
    const QSslCertificate certificate{contentOf(folder.filePath(u"certificate.pem"_s))};
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate);
    configuration.setPrivateKey(QSslKey{contentOf(folder.filePath(u"server.key"_s)), QSsl::Ec});
    server.setSslConfiguration(configuration);
    QObject::connect(&server, &QSslServer::startedEncryptionHandshake, &server, [this](QSslSocket *socket) {
        ++begun;
        answer(socket);
    });
    if (certificate.isNull() || !server.listen(QHostAddress::LocalHost)) {
        qFatal("No server with TLS");
    }
}

void TlsServer::answer(QSslSocket *socket)
{
    // Not to the server itself, which ends every connection of its own to the socket after the handshake.
    QObject::connect(socket, &QSslSocket::readyRead, socket, [this, socket] {
        bytes += socket->readAll();
        if (bytes.contains("\r\n\r\n") && bytes.endsWith('}')) {
            socket->write(ScriptedAnswer::whole(pictureAnswer()).pieces.first().bytes);
            socket->disconnectFromHost();
        }
    });
}

TrustedAuthority::TrustedAuthority(const QSslCertificate &authority)
    : former{QSslConfiguration::defaultConfiguration()}
{
    QSslConfiguration trusting = former;
    trusting.addCaCertificate(authority);
    QSslConfiguration::setDefaultConfiguration(trusting);
}

TrustedAuthority::~TrustedAuthority()
{
    QSslConfiguration::setDefaultConfiguration(former);
}

} // namespace quilmora::test
