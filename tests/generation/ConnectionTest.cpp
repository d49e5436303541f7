#include "generation/Client.h"
#include "generation/TlsServer.h"

#include <QNetworkProxy>
#include <QTcpServer>
#include <QTcpSocket>

#include <optional>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(quilmora::test::TlsServer::Identity)

namespace {

QString closedPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QString::number(server.serverPort());
}

/// No such host is looked for where a proxy stands between.
constexpr QStringView host = u"quilmora.invalid";

const char *const page = "<html><body>代理</body></html>";
const char *const challenge = "Proxy-Authenticate: Basic realm=\"x\"\r\n";

VolcengineConfig config(const QString &scheme)
{
    return configFor(scheme + u"://"_s + host + u"/api/v3/images/generations"_s);
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

/// What lies between the application and the service: addresses at which there is none, a network that goes
/// away and comes back under one service object, servers that can or cannot prove who they are, and proxies.
class ConnectionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addresses_data()
    {
        const DataRows<QString> addRow{"text"};
        const auto row = [&addRow](const QString &url, const QString &text = {}) {
            addRow(url.toUtf8(), text);
        };
        row(u"http://127.0.0.1:CLOSED"_s, u"连接被拒绝"_s);
        row(u"https://127.0.0.1:CLOSED"_s, u"连接被拒绝"_s);
        row(u"http://quilmora.invalid/"_s, u"没有找到"_s);
        for (const QString &url : {u"/api/v3/images/generations"_s, u"gopher://127.0.0.1/"_s,
                                   u"ark.example.org/api/v3/images/generations"_s, u"x"_s}) {
            row(url, u"协议"_s);
        }
        for (const QString &url : {u"http:///x"_s, u"http://"_s, u"https:///api"_s, u"ftp://127.0.0.1/x"_s,
                                   u"ftp://"_s, u"file:///etc/hostname"_s, u"data:application/json,x"_s,
                                   u"qrc:/translations/qtbase_zh_CN.qm"_s}) {
            row(url);
        }
    }

    void addresses()
    {
        QFETCH(const QString, text);
        QString url = QString::fromUtf8(QTest::currentDataTag());
        url.replace(u"CLOSED"_s, closedPort());
        Client client;
        client.start(configFor(url));
        QCOMPARE(client.outcomes.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(client.outcomes.size(), 1, 20'000);
        const Outcome outcome = client.outcomes.constFirst();
        QCOMPARE(outcome.kind, Outcome::Kind::transportError);
        QVERIFY2(outcome.text.contains(text), qPrintable(outcome.text));
        // The host and the scheme may be named.
        QString words = outcome.text;
        words.remove(u"quilmora.invalid"_s).remove(QUrl{url}.scheme());
        QVERIFY2(isChinese(words), qPrintable(outcome.text));
        QCOMPARE(client.threads.constFirst(), QThread::currentThread());
    }

    void aServerThatIsGoneAndBack()
    {
        auto server = std::make_unique<ScriptedHttpServer>(pictureResponse());
        const VolcengineConfig config = configFor(*server);
        const auto port = static_cast<quint16>(server->url().port());
        Client client;
        QCOMPARE(client.generate(config), Outcome::picture());

        server.reset();
        for (int count = 0; count < 3; ++count) {
            QCOMPARE(client.generate(config), Outcome::lost(u"连接被拒绝"_s));
        }

        server = std::make_unique<ScriptedHttpServer>([](const auto &) { return pictureResponse(); }, port);
        QCOMPARE(client.generate(config), Outcome::picture());
        QCOMPARE(server->headCount(), 1);
    }

    void aServerThatGoesDuringARequest()
    {
        auto server = std::make_unique<ScriptedHttpServer>(ScriptedResponse::silence());
        const VolcengineConfig config = configFor(*server);
        const auto port = static_cast<quint16>(server->url().port());
        Client client;
        client.start(config);
        QTRY_COMPARE(server->requestCount(), 1);
        server.reset();
        QTRY_COMPARE(client.outcomes, QList<Outcome>{Outcome::closed()});

        server = std::make_unique<ScriptedHttpServer>([](const auto &) { return pictureResponse(); }, port);
        QCOMPARE(client.generate(config), Outcome::picture());
        // The lost one has not come along.
        QCOMPARE(server->headCount(), 1);
    }

    void aNameThatIsUnknownAndThenRight()
    {
        const ScriptedHttpServer server{pictureResponse()};
        Client client;
        VolcengineConfig wrong = configFor(server);
        wrong.apiURL.replace(u"127.0.0.1"_s, u"quilmora.invalid"_s);
        QCOMPARE(client.generate(wrong), Outcome::lost(u"主机 quilmora.invalid 没有找到"_s));
        QCOMPARE(client.generate(server), Outcome::picture());
        QCOMPARE(server.headCount(), 1);
    }

    void manyFaultsInARow()
    {
        const QList<ScriptedResponse> responses{ScriptedResponse::reset(), ScriptedResponse::cut("{", 100),
                                                ScriptedResponse::whole("Bad Gateway", "502 Bad Gateway"),
                                                pictureResponse()};
        const ScriptedHttpServer server{[responses, count = 0](const auto &) mutable {
            return responses.at(count++ % responses.size());
        }};
        Client client;
        for (int count = 1; count <= 100; ++count) {
            QCOMPARE(client.generate(server) == Outcome::picture(), count % 4 == 0);
            QCOMPARE(server.headCount(), count);
            QCOMPARE(client.outcomes.size(), count);
        }
    }

    void aServerWithoutProofNeverSeesTheKey_data()
    {
        const DataRows<TlsServer::Identity, bool, QString> row{"identity", "isTrusted", "reason"};
        using Identity = TlsServer::Identity;
        const QString misnamed = u"主机名与此证书的任何有效主机不匹配"_s;
        row("nobody trusted vouches", Identity{}, false, u"无法找到本地查找证书的颁发者证书"_s);
        row("expired", Identity{.notAfter = u"20210101000000Z"_s}, true, u"证书已过期"_s);
        row("not valid yet", Identity{.notBefore = u"20480101000000Z"_s}, true, u"证书尚未生效"_s);
        row("another address's", Identity{.subject = u"IP:127.0.0.2"_s}, true, misnamed);
        row("another name's", Identity{.subject = u"DNS:example.org"_s}, true, misnamed);
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
        QCOMPARE(client.generate(configFor(server.url())), Outcome::lost(u"SSL 握手失败: "_s + reason));
        QCOMPARE(server.handshakes(), 1);

        // The next one, with proof, is sent its request by the same service.
        const TlsServer good;
        const TrustedAuthority goodTrust{good.authority()};
        QCOMPARE(client.generate(configFor(good.url())), Outcome::picture());
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
            Client{}.generate(configFor(u"https://127.0.0.1:"_s + QString::number(plain.serverPort())));
        QCOMPARE(outcome.kind, Outcome::Kind::transportError);
        QVERIFY2(outcome.text.startsWith(u"SSL 握手失败"_s) && isChinese(outcome.text),
                 qPrintable(outcome.text));
    }

    void whatAProxySendsItselfIsShown_data()
    {
        const DataRows<ScriptedResponse, Outcome> row{"response", "outcome"};
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
        QCOMPARE(proxy.requests().constFirst().path(), "http://quilmora.invalid/api/v3/images/generations");
    }

    void aProxyThatOpensNoTunnel_data()
    {
        const DataRows<ScriptedResponse, QString> row{"response", "text"};
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

    void aTunnelNeverSeesTheKey()
    {
        const TlsServer server{{.subject = u"DNS:"_s + host}};
        const TrustedAuthority trust{server.authority()};
        // Open to all, and with a password.
        for (const QString &password : {u""_s, u"password"_s}) {
            const FailureNote note{password.toUtf8()};
            const QByteArray credentials{"user:" + password.toUtf8()};
            const Tunnel tunnel{server.port(), password.isEmpty() ? QByteArray{} : credentials.toBase64()};
            const UseOfProxy use{tunnel.port(), password.isEmpty() ? QString{} : u"user"_s, password};
            QCOMPARE(Client{}.generate(config(u"https"_s)), Outcome::picture());
            QVERIFY(tunnel.seen.contains("CONNECT quilmora.invalid:443"));
            QVERIFY(!tunnel.seen.contains("secret-key"));
            QVERIFY(!tunnel.seen.contains(QByteArray{"secret-key"}.toBase64()));
        }
        QCOMPARE(server.handshakes(), 2);
        QCOMPARE(server.request().head.count("POST "), 2);
        QCOMPARE(server.request().header("Authorization"), "Bearer secret-key");
        QCOMPARE(server.request().headerCount("Authorization"), 2);
        QCOMPARE(server.request().headerCount("Proxy-Authorization"), 0);
    }
};

QUILMORA_TEST(ConnectionTest, runChineseTest)
#include "ConnectionTest.moc"
#include "support/FailureNote.h"
