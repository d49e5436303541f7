#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>
#include <QTcpServer>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

constexpr auto shortLimit = 150ms;

Results resultOf(const QString &url, std::chrono::milliseconds limit = 10s)
{
    ImageGeneratorService service{{.request = limit, .download = limit}};
    Results results;
    service.generateImage(u"p"_s, 2848, 1600, {}, {url, u"secret-key"_s, u"m"_s}, results.collect());
    if (!QTest::qWaitFor([&results] { return !results.all.isEmpty(); }, 20'000)) {
        results.all.append(GenError::serverError(u"no result"_s));
    }
    return results;
}

QString closedPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QString::number(server.serverPort());
}

} // namespace

/// Failures of the connection, each with a text in Chinese.
class TransportFaultsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void addressesThatCannotBeReached_data();
    void addressesThatCannotBeReached();
    void lostConnections_data();
    void lostConnections();
    void silenceReadsAsATimeout_data();
    void silenceReadsAsATimeout();
    void slowBytesKeepTheRequestAlive();
    void bodiesThatCannotBeUnpacked_data();
    void bodiesThatCannotBeUnpacked();
    void somethingThatIsNoHttp();
};

void TransportFaultsTest::addressesThatCannotBeReached_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("named");
    QTest::newRow("refused") << u"http://127.0.0.1:"_s + closedPort() << u"连接被拒绝"_s;
    QTest::newRow("refused with TLS") << u"https://127.0.0.1:"_s + closedPort() << u"连接被拒绝"_s;
    QTest::newRow("unknown host") << u"http://quilmora.invalid/"_s << u"没有找到"_s;
    QTest::newRow("no scheme") << u"/api/v3/images/generations"_s << u"协议"_s;
    QTest::newRow("another scheme") << u"gopher://127.0.0.1/"_s << u"协议"_s;
    QTest::newRow("no host") << u"http:///x"_s << u""_s;
}

void TransportFaultsTest::addressesThatCannotBeReached()
{
    QFETCH(const QString, url);
    QFETCH(const QString, named);
    const Results results = resultOf(url);
    QVERIFY(results.isTransportError());
    QVERIFY2(results.text().contains(named), qPrintable(results.text()));
    // The address itself may be named.
    QString words = results.text();
    words.remove(u"quilmora.invalid"_s).remove(u"gopher"_s);
    QVERIFY2(isChinese(words), qPrintable(results.text()));
}

void TransportFaultsTest::lostConnections_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::newRow("closed before the answer") << ScriptedAnswer::hangUp();
    QTest::newRow("torn down before the answer") << ScriptedAnswer::reset();
    QTest::newRow("closed within the headers") << ScriptedAnswer{{{"HTTP/1.1 200 OK\r\nContent-Le"}}};
    QTest::newRow("closed before the body") << ScriptedAnswer::cut({}, 100);
    QTest::newRow("closed within the body") << ScriptedAnswer::cut(pictureAnswer(), 100'000);
    QTest::newRow("one byte missing")
        << ScriptedAnswer::cut(pictureAnswer().chopped(1), pictureAnswer().size());
    QTest::newRow("torn down within the body")
        << ScriptedAnswer{ScriptedAnswer::cut("{", 100).pieces, ScriptedAnswer::End::reset};
    QTest::newRow("closed between chunks")
        << ScriptedAnswer{{{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n"}}};
    QTest::newRow("closed within an error's body")
        << ScriptedAnswer{{{"HTTP/1.1 500 Oops\r\nContent-Length: 100\r\n\r\n{\"error\":{}}"}}};
    QTest::newRow("closed within a challenge's body") << ScriptedAnswer{
        {{"HTTP/1.1 401 No\r\nWWW-Authenticate: Basic\r\nContent-Length: 100\r\n\r\n{\"error\":{}}"}}};
}

void TransportFaultsTest::lostConnections()
{
    QFETCH(ScriptedAnswer, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return answer;
    }};
    const Results results = resultOf(server.url().toString());
    QVERIFY2(results.isTransportError(), qPrintable(results.text()));
    QCOMPARE(results.text(), u"连接已关闭"_s);
    QCOMPARE(server.headCount(), 1);
}

void TransportFaultsTest::silenceReadsAsATimeout_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    const auto open = ScriptedAnswer::End::stayOpen;
    QTest::newRow("no answer") << ScriptedAnswer::silence();
    QTest::newRow("half of the headers") << ScriptedAnswer{{{"HTTP/1.1 200 OK\r\n"}}, open};
    QTest::newRow("half of the body") << ScriptedAnswer{ScriptedAnswer::cut("{", 9).pieces, open};
    QTest::newRow("half of an error's body")
        << ScriptedAnswer{{{"HTTP/1.1 400 Bad\r\nContent-Length: 9\r\n\r\n{"}}, open};
}

void TransportFaultsTest::silenceReadsAsATimeout()
{
    QFETCH(ScriptedAnswer, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return answer;
    }};
    const Results results = resultOf(server.url().toString(), shortLimit);
    QVERIFY(results.isTransportError());
    QCOMPARE(results.text(), u"请求超时"_s);
    QCOMPARE(server.headCount(), 1);
}

void TransportFaultsTest::slowBytesKeepTheRequestAlive()
{
    static constexpr auto limit = 800ms;
    static constexpr int parts = 8;
    // In all twice as long as the limit.
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::dripping(pictureAnswer(), parts, limit / 4);
    }};
    QVERIFY(resultOf(server.url().toString(), limit).isPicture());
}

void TransportFaultsTest::bodiesThatCannotBeUnpacked_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no packed data at all") << QByteArray{"{\"error\":{}}"};
    QByteArray broken = ScriptedAnswer::encoded(pictureAnswer({200, 100})).pieces.first().bytes;
    broken = broken.sliced(broken.indexOf("\r\n\r\n") + 4);
    QTest::newRow("damaged in the middle") << QByteArray{broken}.replace(200, 8, "damaged!");
}

void TransportFaultsTest::bodiesThatCannotBeUnpacked()
{
    QFETCH(const QByteArray, body);
    ScriptedHttpServer server{[body](const auto &) {
        return ScriptedAnswer::whole(body, "200 OK", "Content-Encoding: gzip\r\n");
    }};
    const Results results = resultOf(server.url().toString());
    QVERIFY2(results.isTransportError(), qPrintable(results.text()));
    QCOMPARE(results.text(), u"解压失败"_s);
}

void TransportFaultsTest::somethingThatIsNoHttp()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer{{{"220 mail.example.org ESMTP\r\n"}}};
    }};
    const Results results = resultOf(server.url().toString());
    QVERIFY(results.isTransportError());
    QVERIFY2(isChinese(results.text()), qPrintable(results.text()));
    QCOMPARE(server.headCount(), 1);
}

QTEST_GUILESS_MAIN(TransportFaultsTest)
#include "TransportFaultsTest.moc"
