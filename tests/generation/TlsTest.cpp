#include "generation/Client.h"
#include "generation/TlsServer.h"
#include "platform/ChineseTranslations.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

Q_DECLARE_METATYPE(quilmora::test::TlsServer::Identity)

namespace {

VolcengineConfig configOf(const QString &url)
{
    return {url, u"secret-key"_s, u"m"_s};
}

} // namespace

/// Servers that can, and that cannot, prove who they are.
class TlsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseTranslations(*QCoreApplication::instance()); }

    void aServerWithoutProofNeverSeesTheKey_data()
    {
        QTest::addColumn<TlsServer::Identity>("identity");
        QTest::addColumn<bool>("isTrusted");
        QTest::addColumn<QString>("reason");
        using Identity = TlsServer::Identity;
        const QString misnamed = u"主机名与此证书的任何有效主机不匹配"_s;
        QTest::newRow("nobody trusted vouches")
            << Identity{} << false << u"无法找到本地查找证书的颁发者证书"_s;
        QTest::newRow("expired") << Identity{.notAfter = u"20210101000000Z"_s} << true << u"证书已过期"_s;
        QTest::newRow("not valid yet")
            << Identity{.notBefore = u"20480101000000Z"_s} << true << u"证书尚未生效"_s;
        QTest::newRow("another address's") << Identity{.subject = u"IP:127.0.0.2"_s} << true << misnamed;
        QTest::newRow("another name's") << Identity{.subject = u"DNS:example.org"_s} << true << misnamed;
    }

    void aServerWithoutProofNeverSeesTheKey()
    {
        QFETCH(const TlsServer::Identity, identity);
        QFETCH(const bool, isTrusted);
        QFETCH(const QString, reason);
        const TlsServer server{identity};
        std::optional<TrustedAuthority> trust;
        if (isTrusted) {
            trust.emplace(server.authority());
        }
        Client client;
        QCOMPARE(client.generate(configOf(server.url())), Outcome::lost(u"SSL 握手失败: "_s + reason));
        QCOMPARE(server.handshakes(), 1);

        // The next one, with proof, is sent its request by the same service.
        const TlsServer good;
        const TrustedAuthority goodTrust{good.authority()};
        QCOMPARE(client.generate(configOf(good.url())), Outcome::picture());
        QCOMPARE(good.handshakes(), 1);
        QCOMPARE(good.request().header("Authorization"), "Bearer secret-key");
        QCOMPARE(server.request().head, QByteArray{});
    }

    void aServerWithoutTls()
    {
        QTcpServer plain;
        connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
            QTcpSocket *socket = plain.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                socket->write("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n");
                socket->disconnectFromHost();
            });
        });
        QVERIFY(plain.listen(QHostAddress::LocalHost));
        const Outcome outcome =
            Client{}.generate(configOf(u"https://127.0.0.1:"_s + QString::number(plain.serverPort())));
        QCOMPARE(outcome.kind, Outcome::Kind::transportError);
        QVERIFY2(outcome.text.startsWith(u"SSL 握手失败"_s) && isChinese(outcome.text),
                 qPrintable(outcome.text));
    }
};

QUILMORA_TEST(TlsTest, runCoreTest)
#include "TlsTest.moc"
