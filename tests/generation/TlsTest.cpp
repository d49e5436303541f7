#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "generation/TlsServer.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

Q_DECLARE_METATYPE(quilmora::test::TlsServer::Identity)

/// Servers that can, and that cannot, prove who they are.
class TlsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void aServerWithoutProofNeverSeesTheKey_data();
    void aServerWithoutProofNeverSeesTheKey();
    void aTrustedServerIsSentTheRequest();
    void aServerWithoutTls();

private:
    void generate(const QString &url);

    Results results;
    ImageGeneratorService service;
};

void TlsTest::generate(const QString &url)
{
    results = {};
    service.generateImage(u"p"_s, 1, 1, {}, {url, u"secret-key"_s, u"m"_s}, results.collect());
    QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 1, 20'000);
}

void TlsTest::aServerWithoutProofNeverSeesTheKey_data()
{
    QTest::addColumn<TlsServer::Identity>("identity");
    QTest::addColumn<bool>("isTrusted");
    QTest::addColumn<QString>("text");
    using Identity = TlsServer::Identity;
    const QString failed = u"SSL 握手失败: "_s;
    const QString misnamed = failed + u"主机名与此证书的任何有效主机不匹配"_s;
    QTest::newRow("nobody trusted vouches")
        << Identity{} << false << failed + u"无法找到本地查找证书的颁发者证书"_s;
    QTest::newRow("expired") << Identity{.notAfter = u"20210101000000Z"_s} << true
                             << failed + u"证书已过期"_s;
    QTest::newRow("not valid yet") << Identity{.notBefore = u"20480101000000Z"_s} << true
                                   << failed + u"证书尚未生效"_s;
    QTest::newRow("another address's") << Identity{.subject = u"IP:127.0.0.2"_s} << true << misnamed;
    QTest::newRow("another name's") << Identity{.subject = u"DNS:example.org"_s} << true << misnamed;
}

void TlsTest::aServerWithoutProofNeverSeesTheKey()
{
    QFETCH(const TlsServer::Identity, identity);
    QFETCH(const bool, isTrusted);
    QFETCH(const QString, text);
    const TlsServer server{identity};
    std::optional<TrustedAuthority> trust;
    if (isTrusted) {
        trust.emplace(server.authority());
    }
    generate(server.url());
    QVERIFY(results.isTransportError());
    QCOMPARE(results.text(), text);
    QCOMPARE(server.handshakes(), 1);
    QCOMPARE(server.received(), QByteArray{});

    // The next one, with proof, is sent its request by the same service.
    const TlsServer good;
    const TrustedAuthority goodTrust{good.authority()};
    generate(good.url());
    QVERIFY2(results.isPicture(), qPrintable(results.text()));
    QCOMPARE(good.handshakes(), 1);
    QCOMPARE(server.received(), QByteArray{});
}

void TlsTest::aTrustedServerIsSentTheRequest()
{
    const TlsServer server;
    const TrustedAuthority trust{server.authority()};
    generate(server.url());
    QVERIFY2(results.isPicture(), qPrintable(results.text()));
    QCOMPARE((ReceivedRequest{server.received(), {}}.header("Authorization")), "Bearer secret-key");
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
    generate(u"https://127.0.0.1:"_s + QString::number(talking.serverPort()));
    QVERIFY(results.isTransportError());
    QVERIFY2(results.text().startsWith(u"SSL 握手失败"_s) && isChinese(results.text()),
             qPrintable(results.text()));
}

QTEST_GUILESS_MAIN(TlsTest)
#include "TlsTest.moc"
