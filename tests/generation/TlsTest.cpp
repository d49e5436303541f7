#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

} // namespace

/// Requests to a server whose certificate nobody vouches for.
class TlsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void anUntrustedServerNeverSeesTheKey();
    void aTrustedServerIsSentTheRequest();
    void aServerWithoutTls();

private:
    Results resultOf(const QString &url);

    QSslConfiguration serverConfiguration;
    QSslCertificate certificate;
    std::unique_ptr<QSslServer> server;
    QByteArray received; ///< What the server could read, decrypted.
    int handshakes = 0;
};

void TlsTest::initTestCase()
{
    installChineseCatalogue(*QCoreApplication::instance());
    const QTemporaryDir folder;
    QProcess openssl;
    openssl.setWorkingDirectory(folder.path());
    openssl.start(u"openssl"_s,
                  {u"req"_s, u"-x509"_s, u"-newkey"_s, u"rsa:2048"_s, u"-nodes"_s, u"-days"_s, u"2"_s,
                   u"-subj"_s, u"/CN=quilmora test"_s, u"-addext"_s, u"subjectAltName=IP:127.0.0.1"_s,
                   u"-keyout"_s, u"key.pem"_s, u"-out"_s, u"certificate.pem"_s});
    QVERIFY2(openssl.waitForFinished() && openssl.exitCode() == 0,
             openssl.readAllStandardError().constData());
    certificate = QSslCertificate{contentOf(folder.filePath(u"certificate.pem"_s))};
    QVERIFY(!certificate.isNull());
    serverConfiguration = QSslConfiguration::defaultConfiguration();
    serverConfiguration.setLocalCertificate(certificate);
    serverConfiguration.setPrivateKey(QSslKey{contentOf(folder.filePath(u"key.pem"_s)), QSsl::Rsa});
}

void TlsTest::init()
{
    received.clear();
    handshakes = 0;
    server = std::make_unique<QSslServer>();
    server->setSslConfiguration(serverConfiguration);
    connect(server.get(), &QSslServer::startedEncryptionHandshake, this, [this](QSslSocket *socket) {
        ++handshakes;
        connect(socket, &QSslSocket::readyRead, this, [this, socket] {
            received += socket->readAll();
            if (received.contains("\r\n\r\n") && received.endsWith('}')) {
                socket->write(ScriptedAnswer::whole(pictureAnswer()).pieces.first().bytes);
                socket->disconnectFromHost();
            }
        });
    });
    QVERIFY(server->listen(QHostAddress::LocalHost));
}

Results TlsTest::resultOf(const QString &url)
{
    ImageGeneratorService service;
    Results results;
    service.generateImage(u"p"_s, 1, 1, {}, {url, u"secret-key"_s, u"m"_s}, results.collect());
    if (!QTest::qWaitFor([&results] { return !results.all.isEmpty(); }, 20'000)) {
        results.all.append(GenError::serverError(u"no result"_s));
    }
    return results;
}

void TlsTest::anUntrustedServerNeverSeesTheKey()
{
    const Results results = resultOf(u"https://127.0.0.1:"_s + QString::number(server->serverPort()));
    QVERIFY(results.isTransportError());
    QVERIFY2(results.text().contains(u"证书"_s) && isChinese(results.text()), qPrintable(results.text()));
    QCOMPARE(handshakes, 1);
    QCOMPARE(received, QByteArray{});
}

void TlsTest::aTrustedServerIsSentTheRequest()
{
    const QSslConfiguration former = QSslConfiguration::defaultConfiguration();
    QSslConfiguration trusting = former;
    trusting.addCaCertificate(certificate);
    QSslConfiguration::setDefaultConfiguration(trusting);
    const Results results = resultOf(u"https://127.0.0.1:"_s + QString::number(server->serverPort()));
    QSslConfiguration::setDefaultConfiguration(former);
    QVERIFY2(results.isPicture(), qPrintable(results.text()));
    QVERIFY(received.contains("\r\nAuthorization: Bearer secret-key\r\n"));
}

void TlsTest::aServerWithoutTls()
{
    QTcpServer talking;
    connect(&talking, &QTcpServer::newConnection, &talking, [&talking] {
        QTcpSocket *socket = talking.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            socket->write("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
            socket->disconnectFromHost();
        });
    });
    QVERIFY(talking.listen(QHostAddress::LocalHost));
    const Results results = resultOf(u"https://127.0.0.1:"_s + QString::number(talking.serverPort()));
    QVERIFY(results.isTransportError());
    QVERIFY2(results.text().startsWith(u"SSL 握手失败"_s) && isChinese(results.text()),
             qPrintable(results.text()));
}

QTEST_GUILESS_MAIN(TlsTest)
#include "TlsTest.moc"
