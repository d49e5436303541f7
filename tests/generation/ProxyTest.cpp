#include "generation/FaultRun.h"
#include "generation/TlsServer.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

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
        QObject::connect(&server, &QTcpServer::newConnection, &server, [=, this] {
            QTcpSocket *client = server.nextPendingConnection();
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
        if (!server.listen(QHostAddress::LocalHost)) {
            qFatal("No tunnel");
        }
    }
    quint16 port() const { return server.serverPort(); }

    QByteArray seen;

private:
    QTcpServer server;
};

} // namespace

/// A proxy between the application and the service, as companies and their networks have them.
class ProxyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void whatAProxyAnswersItselfIsShown_data();
    void whatAProxyAnswersItselfIsShown();
    void aProxyThatLetsNothingThroughIsTold_data();
    void aProxyThatLetsNothingThroughIsTold();
    void aProxyThatIsNotThereIsTold_data();
    void aProxyThatIsNotThereIsTold();
    void aTunnelNeverSeesTheKey_data();
    void aTunnelNeverSeesTheKey();
};

void ProxyTest::whatAProxyAnswersItselfIsShown_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<Outcome>("outcome");
    const Outcome closed = Outcome::lost(u"连接已关闭"_s);
    const Outcome shown = Outcome::told(QString::fromUtf8(page));
    QTest::newRow("a picture") << ScriptedAnswer::whole(pictureAnswer()) << Outcome::picture();
    QTest::newRow("a page") << ScriptedAnswer::whole(page) << shown;
    QTest::newRow("a page with a status") << ScriptedAnswer::whole(page, "502 Bad Gateway") << shown;
    QTest::newRow("407") << ScriptedAnswer::whole(page, "407 Proxy Authentication Required", challenge)
                         << shown;
    QTest::newRow("407 without a scheme") << ScriptedAnswer::whole(page, "407 No") << shown;
    QTest::newRow("407 and nothing else")
        << ScriptedAnswer::whole({}, "407 No", challenge) << Outcome::told({});
    QTest::newRow("closed") << ScriptedAnswer::hangUp() << closed;
    QTest::newRow("torn down") << ScriptedAnswer::reset() << closed;
    QTest::newRow("cut page") << ScriptedAnswer::cut(page, 1000) << closed;
}

void ProxyTest::whatAProxyAnswersItselfIsShown()
{
    QFETCH(const ScriptedAnswer, answer);
    QFETCH(const Outcome, outcome);
    const ScriptedHttpServer proxy{faultOnce(answer)};
    const UseOfProxy use{proxy.url().port()};
    survive(proxy, config(u"http"_s), outcome);
    QCOMPARE(proxy.requests().constFirst().path(),
             QByteArray{"http://quilmora.invalid/api/v3/images/generations"});
}

void ProxyTest::aProxyThatLetsNothingThroughIsTold_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<QString>("text");
    QTest::newRow("407") << ScriptedAnswer::whole(page, "407 No", challenge) << u"代理需要验证"_s;
    QTest::newRow("a page with a status")
        << ScriptedAnswer::whole(page, "502 Bad Gateway") << u"和 HTTP 代理通讯时发生错误"_s;
    QTest::newRow("403") << ScriptedAnswer::whole(page, "403 Forbidden") << u"代理拒绝连接"_s;
    QTest::newRow("a page in place of the server") << ScriptedAnswer::whole(page) << u"连接已关闭"_s;
    QTest::newRow("no HTTP") << ScriptedAnswer{{{"220 mail.example.org ESMTP\r\n\r\n"}}}
                             << u"未收到代理的 HTTP 响应"_s;
    // QNetworkAccessManager takes no notice of it, and waits.
    QTest::newRow("closed") << ScriptedAnswer::hangUp() << u"请求超时"_s;
    QTest::newRow("torn down") << ScriptedAnswer::reset() << u"请求超时"_s;
    QTest::newRow("silent") << ScriptedAnswer::silence() << u"请求超时"_s;
}

void ProxyTest::aProxyThatLetsNothingThroughIsTold()
{
    QFETCH(ScriptedAnswer, answer);
    QFETCH(const QString, text);
    const ScriptedHttpServer proxy{[answer](const auto &) {
        return answer;
    }};
    const ScriptedHttpServer server{faultOnce(ScriptedAnswer::whole(pictureAnswer()))};
    Results results;
    ImageGeneratorService service{{.request = 2s, .download = 2s}};
    {
        const UseOfProxy use{proxy.url().port()};
        service.generateImage(u"p"_s, 1, 1, {}, config(u"https"_s), results.collect());
        QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 1, 20'000);
    }
    QVERIFY(results.isTransportError());
    QCOMPARE(results.text(), text);
    for (const ReceivedRequest &request : proxy.requests()) {
        QCOMPARE(request.method(), "CONNECT");
        QVERIFY(!request.head.contains("secret-key"));
    }
    service.generateImage(u"p"_s, 1, 1, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 2);
    QVERIFY2(results.isPicture(1), qPrintable(results.text(1)));
}

void ProxyTest::aProxyThatIsNotThereIsTold_data()
{
    QTest::addColumn<QString>("scheme");
    QTest::addColumn<QString>("text");
    QTest::newRow("http") << u"http"_s << u"连接被拒绝"_s;
    QTest::newRow("https") << u"https"_s << u"代理连接被拒绝"_s;
}

void ProxyTest::aProxyThatIsNotThereIsTold()
{
    QFETCH(const QString, scheme);
    QFETCH(const QString, text);
    int port = 0;
    {
        const ScriptedHttpServer gone{[](const auto &) {
            return ScriptedAnswer::hangUp();
        }};
        port = gone.url().port();
    }
    const UseOfProxy use{port};
    Results results;
    ImageGeneratorService service;
    service.generateImage(u"p"_s, 1, 1, {}, config(scheme), results.collect());
    QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 1, 20'000);
    QVERIFY(results.isTransportError());
    QCOMPARE(results.text(), text);
}

void ProxyTest::aTunnelNeverSeesTheKey_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("open to all") << u""_s;
    QTest::newRow("with a password") << u"password"_s;
}

void ProxyTest::aTunnelNeverSeesTheKey()
{
    QFETCH(const QString, password);
    const TlsServer server{{.subject = u"DNS:"_s + host}};
    const TrustedAuthority trust{server.authority()};
    const bool isOpen = password.isEmpty();
    const Tunnel tunnel{server.port(), isOpen ? QByteArray{} : QByteArray{"user:password"}.toBase64()};
    const UseOfProxy use{tunnel.port(), isOpen ? QString{} : u"user"_s, password};
    Results results;
    ImageGeneratorService service;
    service.generateImage(u"p"_s, 1, 1, {}, config(u"https"_s), results.collect());
    QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 1, 20'000);
    QVERIFY2(results.isPicture(), qPrintable(results.text()));
    QCOMPARE((ReceivedRequest{server.received(), {}}.header("Authorization")), "Bearer secret-key");
    QCOMPARE(server.received().count("POST "), 1);
    QCOMPARE((ReceivedRequest{server.received(), {}}.headerCount("Proxy-Authorization")), 0);
    QVERIFY(tunnel.seen.contains("CONNECT quilmora.invalid:443"));
    QVERIFY(!tunnel.seen.contains("secret-key"));
    QVERIFY(!tunnel.seen.contains(QByteArray{"secret-key"}.toBase64()));
}

QTEST_GUILESS_MAIN(ProxyTest)
#include "ProxyTest.moc"
