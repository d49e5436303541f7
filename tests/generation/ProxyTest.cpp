#include "generation/Client.h"
#include "generation/TlsServer.h"
#include "platform/ChineseTranslations.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

/// No such host is looked for where a proxy stands between.
constexpr QStringView host = u"quilmora.invalid";

const char *const page = "<html><body>代理</body></html>";
const char *const challenge = "Proxy-Authenticate: Basic realm=\"x\"\r\n";

VolcengineConfig config(const QString &scheme)
{
    return {scheme + u"://"_s + host + u"/api/v3/images/generations"_s, u"secret-key"_s, u"m"_s};
}

/// For as long as it exists, everything goes by the proxy on that port.
class UseOfProxy final
{
public:
    explicit UseOfProxy(int port, const QString &user = {}, const QString &password = {})
    {
        QNetworkProxy::setApplicationProxy(
            {QNetworkProxy::HttpProxy, u"127.0.0.1"_s, static_cast<quint16>(port), user, password});
    }
    Q_DISABLE_COPY_MOVE(UseOfProxy)
    ~UseOfProxy() { QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy); }
};

/// A proxy that lets a connection through to a port of this machine, whatever host is named, and keeps what
/// it sees.
class Tunnel final
{
public:
    explicit Tunnel(quint16 targetPort, const QByteArray &wantedCredentials = {})
    {
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [=, this] {
            QTcpSocket *client = m_server.nextPendingConnection();
            auto *target = new QTcpSocket{client};
            QObject::connect(client, &QTcpSocket::readyRead, client, [=, this] {
                const QByteArray bytes = client->readAll();
                seen += bytes;
                if (target->state() != QAbstractSocket::UnconnectedState) {
                    target->write(bytes);
                } else if (!bytes.contains(wantedCredentials)) {
                    client->write("HTTP/1.1 407 No\r\nContent-Length: 0\r\n" + QByteArray{challenge} +
                                  "\r\n");
                } else {
                    target->connectToHost(QHostAddress::LocalHost, targetPort);
                    client->write("HTTP/1.1 200 Connected\r\n\r\n");
                }
            });
            QObject::connect(target, &QTcpSocket::readyRead, client,
                             [=] { client->write(target->readAll()); });
            QObject::connect(target, &QTcpSocket::disconnected, client,
                             [=] { client->disconnectFromHost(); });
        });
        if (!m_server.listen(QHostAddress::LocalHost)) {
            qFatal("No tunnel");
        }
    }
    quint16 port() const { return m_server.serverPort(); }

    QByteArray seen;

private:
    QTcpServer m_server;
};

} // namespace

/// A proxy between the application and the service, as companies and their networks have them.
class ProxyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseTranslations(*QCoreApplication::instance()); }

    void whatAProxySendsItselfIsShown_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        QTest::addColumn<Outcome>("outcome");
        const auto row = [](const char *name, const ScriptedResponse &response, const Outcome &outcome) {
            QTest::newRow(name) << response << outcome;
        };
        const Outcome shown = Outcome::shown(QString::fromUtf8(page));
        row("a picture", pictureResponse(), Outcome::picture());
        row("a page", ScriptedResponse::whole(page), shown);
        row("a page with a status", ScriptedResponse::whole(page, "502 Bad Gateway"), shown);
        row("407", ScriptedResponse::whole(page, "407 Proxy Authentication Required", challenge), shown);
        row("407 without a scheme", ScriptedResponse::whole(page, "407 No"), shown);
        row("407 and nothing else", ScriptedResponse::whole({}, "407 No", challenge), Outcome::shown({}));
        row("closed", ScriptedResponse::hangUp(), Outcome::closed());
        row("reset", ScriptedResponse::reset(), Outcome::closed());
        row("a truncated page", ScriptedResponse::cut(page, 1000), Outcome::closed());
    }

    void whatAProxySendsItselfIsShown()
    {
        QFETCH(const ScriptedResponse, response);
        QFETCH(const Outcome, outcome);
        const ScriptedHttpServer proxy{faultOnce(response)};
        const UseOfProxy use{proxy.url().port()};
        survive(proxy, config(u"http"_s), outcome);
        QCOMPARE(proxy.requests().constFirst().path(),
                 QByteArray{"http://quilmora.invalid/api/v3/images/generations"});
    }

    void aProxyThatOpensNoTunnel_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const ScriptedResponse &response, const QString &text) {
            QTest::newRow(name) << response << text;
        };
        row("407", ScriptedResponse::whole(page, "407 No", challenge), u"代理需要验证"_s);
        row("a page with a status", ScriptedResponse::whole(page, "502 Bad Gateway"),
            u"和 HTTP 代理通讯时发生错误"_s);
        row("403", ScriptedResponse::whole(page, "403 Forbidden"), u"代理拒绝连接"_s);
        row("a page in place of the server", ScriptedResponse::whole(page), u"连接已关闭"_s);
        row("no HTTP", {{{"220 mail.example.org ESMTP\r\n\r\n"}}}, u"未收到代理的 HTTP 响应"_s);
        // QNetworkAccessManager takes no notice of it, and waits.
        row("closed", ScriptedResponse::hangUp(), u"请求超时"_s);
        row("reset", ScriptedResponse::reset(), u"请求超时"_s);
        row("silent", ScriptedResponse::silence(), u"请求超时"_s);
    }

    void aProxyThatOpensNoTunnel()
    {
        QFETCH(const ScriptedResponse, response);
        QFETCH(const QString, text);
        const ScriptedHttpServer proxy{response};
        const ScriptedHttpServer server{pictureResponse()};
        Client client{2s};
        {
            const UseOfProxy use{proxy.url().port()};
            QCOMPARE(client.generate(config(u"https"_s)), Outcome::lost(text));
        }
        for (const ReceivedRequest &request : proxy.requests()) {
            QCOMPARE(request.method(), "CONNECT");
            QVERIFY(!request.head.contains("secret-key"));
        }
        QCOMPARE(client.generate(server), Outcome::picture());
    }

    void aProxyThatIsNotThere()
    {
        const int port = ScriptedHttpServer{ScriptedResponse::hangUp()}.url().port();
        const UseOfProxy use{port};
        QCOMPARE(Client{}.generate(config(u"http"_s)), Outcome::lost(u"连接被拒绝"_s));
        QCOMPARE(Client{}.generate(config(u"https"_s)), Outcome::lost(u"代理连接被拒绝"_s));
    }

    void aTunnelNeverSeesTheKey_data()
    {
        QTest::addColumn<QString>("user");
        QTest::newRow("open to all") << u""_s;
        QTest::newRow("with a password") << u"user"_s;
    }

    void aTunnelNeverSeesTheKey()
    {
        QFETCH(const QString, user);
        const TlsServer server{{.subject = u"DNS:"_s + host}};
        const TrustedAuthority trust{server.authority()};
        const Tunnel tunnel{server.port(),
                            user.isEmpty() ? QByteArray{} : QByteArray{"user:password"}.toBase64()};
        const UseOfProxy use{tunnel.port(), user, user.isEmpty() ? QString{} : u"password"_s};
        QCOMPARE(Client{}.generate(config(u"https"_s)), Outcome::picture());
        QCOMPARE(server.request().header("Authorization"), "Bearer secret-key");
        QCOMPARE(server.request().head.count("POST "), 1);
        QCOMPARE(server.request().headerCount("Proxy-Authorization"), 0);
        QVERIFY(tunnel.seen.contains("CONNECT quilmora.invalid:443"));
        QVERIFY(!tunnel.seen.contains("secret-key"));
        QVERIFY(!tunnel.seen.contains(QByteArray{"secret-key"}.toBase64()));
    }
};

QUILMORA_TEST(ProxyTest, runCoreTest)
#include "ProxyTest.moc"
