#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

void generate(ImageGeneratorService &service, const ScriptedHttpServer &server, Results &results)
{
    service.generateImage(u"p"_s, 2848, 1600, {}, configFor(server), results.collect());
}

/// Redirects the first path with `status` to `location`, and answers every other.
ScriptedHttpServer::Script redirecting(int status, const QByteArray &location)
{
    return [status, location](const ReceivedRequest &request) {
        return request.path() == "/api/v3/images/generations" ? ScriptedAnswer::redirect(status, location)
                                                              : ScriptedAnswer::whole(pictureAnswer());
    };
}

void addStatuses()
{
    QTest::addColumn<int>("status");
    for (const int status : {301, 302, 303, 307, 308}) {
        QTest::addRow("%d", status) << status;
    }
}

} // namespace

class RedirectTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void withinTheOriginIsFollowed_data() { addStatuses(); }
    void withinTheOriginIsFollowed();
    void toAnotherOriginSendsNothing_data() { addStatuses(); }
    void toAnotherOriginSendsNothing();
    void toAnotherSchemeSendsNothing_data();
    void toAnotherSchemeSendsNothing();
    void withoutAnAddressToGoToIsAnAnswer_data();
    void withoutAnAddressToGoToIsAnAnswer();
    void cutShortIsALostConnection_data();
    void cutShortIsALostConnection();
    void inACircleEnds_data() { addStatuses(); }
    void inACircleEnds();
    void aLostConnectionBehindOneIsNotTriedAgain_data() { addStatuses(); }
    void aLostConnectionBehindOneIsNotTriedAgain();
    void aCutRedirectPostsNowhereTwice();
};

void RedirectTest::withinTheOriginIsFollowed()
{
    QFETCH(const int, status);
    ScriptedHttpServer server{redirecting(status, "/new/path?x=1")};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY2(results.isPicture(), qPrintable(results.text()));

    const QList<ReceivedRequest> requests = server.requests();
    QCOMPARE(requests.size(), 2);
    QCOMPARE(server.headCount(), 2);
    QCOMPARE(requests[1].path(), "/new/path?x=1");
    QCOMPARE(requests[1].header("Authorization"), "Bearer secret-key");
    const bool repeatsTheBody = status >= 307;
    QCOMPARE(requests[1].method(), repeatsTheBody ? "POST" : "GET");
    QCOMPARE(requests[1].body, repeatsTheBody ? requests[0].body : QByteArray{});
    QCOMPARE(requests[1].headerCount("Content-Type"), repeatsTheBody ? 1 : 0);
}

void RedirectTest::toAnotherOriginSendsNothing()
{
    QFETCH(const int, status);
    ScriptedHttpServer other{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    ScriptedHttpServer server{redirecting(status, other.url(u"/x"_s).toEncoded())};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isTransportError());
    QVERIFY2(results.text().contains(u"重定向"_s) && isChinese(results.text()), qPrintable(results.text()));
    QCOMPARE(server.headCount(), 1);
    QCOMPARE(other.connectionCount(), 0);
}

void RedirectTest::toAnotherSchemeSendsNothing_data()
{
    QTest::addColumn<QByteArray>("location");
    QTest::newRow("https") << QByteArray{"https://127.0.0.1/x"};
    QTest::newRow("file") << QByteArray{"file:///etc/hostname"};
    QTest::newRow("data") << QByteArray{"data:application/json,x"};
    QTest::newRow("ftp") << QByteArray{"ftp://127.0.0.1/x"};
    QTest::newRow("another host of that port") << QByteArray{"//localhost/x"};
}

void RedirectTest::toAnotherSchemeSendsNothing()
{
    QFETCH(const QByteArray, location);
    for (const int status : {302, 307}) {
        ScriptedHttpServer server{redirecting(status, location)};
        ImageGeneratorService service;
        Results results;
        generate(service, server, results);
        QTRY_COMPARE(results.all.size(), 1);
        QVERIFY(results.isTransportError());
        QVERIFY2(isChinese(results.text()), qPrintable(results.text()));
        QCOMPARE(server.headCount(), 1);
    }
}

void RedirectTest::withoutAnAddressToGoToIsAnAnswer_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QByteArray>("headers");
    for (const char *status : {"300", "301", "302", "303", "304", "307", "308"}) {
        QTest::addRow("%s, none", status) << QByteArray{status} << QByteArray{};
        QTest::addRow("%s, an empty one", status) << QByteArray{status} << QByteArray{"Location: \r\n"};
        QTest::addRow("%s, no address", status)
            << QByteArray{status} << QByteArray{"Location: http://[oops\r\n"};
    }
}

void RedirectTest::withoutAnAddressToGoToIsAnAnswer()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QByteArray, headers);
    const QByteArray body = R"({"error":{"code":"Moved","message":"m"}})";
    const QByteArray head = "HTTP/1.1 " + status + " Moved\r\n" + headers;
    const QByteArray size = QByteArray::number(body.size());
    const QByteArray chunk = QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n0\r\n\r\n";
    QList<QByteArray> answers{head + "Content-Length: " + size + "\r\n\r\n" + body,
                              head + "Transfer-Encoding: chunked\r\n\r\n" + chunk, head + "\r\n" + body};
    for (const QByteArray &answer : answers) {
        ScriptedHttpServer server{[answer](const auto &) {
            return ScriptedAnswer{{{answer}}};
        }};
        ImageGeneratorService service;
        Results results;
        generate(service, server, results);
        QTRY_COMPARE(results.all.size(), 1);
        QVERIFY2(results.isGenError(), qPrintable(results.text()));
        // An answer of 304 has no body, whatever follows.
        QCOMPARE(results.text(), status == "304" ? QString{} : u"[Moved] m"_s);
        QCOMPARE(server.headCount(), 1);
    }
}

void RedirectTest::cutShortIsALostConnection_data()
{
    QTest::addColumn<QByteArray>("answer");
    for (const char *status : {"302", "307", "308"}) {
        const QByteArray head = "HTTP/1.1 " + QByteArray{status} + " Moved\r\n";
        QTest::addRow("%s, a length promised", status) << head + "Content-Length: 100\r\n\r\n{}";
    }
    QTest::newRow("302, in chunks") << QByteArray{
        "HTTP/1.1 302 Moved\r\nTransfer-Encoding: chunked\r\n\r\n64\r\n{}"};
}

void RedirectTest::cutShortIsALostConnection()
{
    QFETCH(const QByteArray, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return ScriptedAnswer{{{answer}}};
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY2(results.isTransportError(), qPrintable(results.text()));
    QVERIFY2(isChinese(results.text()), qPrintable(results.text()));
    QCOMPARE(server.headCount(), 1);
}

void RedirectTest::inACircleEnds()
{
    QFETCH(const int, status);
    ScriptedHttpServer server{[status](const auto &) {
        return ScriptedAnswer::redirect(status, "/api/v3/images/generations");
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isTransportError());
    QVERIFY2(results.text().contains(u"重定向"_s) && isChinese(results.text()), qPrintable(results.text()));
    QVERIFY(server.headCount() < 20);
}

void RedirectTest::aLostConnectionBehindOneIsNotTriedAgain()
{
    QFETCH(const int, status);
    ScriptedHttpServer server{[status](const ReceivedRequest &request) {
        return request.path() == "/lost" ? ScriptedAnswer::hangUp()
                                         : ScriptedAnswer::redirect(status, "/lost");
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isTransportError());
    const QList<ReceivedRequest> requests = server.requests();
    QCOMPARE(std::count_if(requests.begin(), requests.end(),
                           [](const ReceivedRequest &request) {
                               return request.method() == "POST" && request.path() == "/lost";
                           }),
             status >= 307 ? 1 : 0);
}

void RedirectTest::aCutRedirectPostsNowhereTwice()
{
    ScriptedHttpServer server{[](const ReceivedRequest &request) {
        return request.path() == "/x" ? ScriptedAnswer::hangUp()
                                      : ScriptedAnswer{{{"HTTP/1.1 307 Moved\r\nLocation: /x\r\n"
                                                         "Content-Length: 100\r\n\r\nhalf"}}};
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isTransportError());
    const QList<ReceivedRequest> requests = server.requests();
    QVERIFY(requests.size() == 1 || (requests.size() == 2 && requests[1].path() == "/x"));
    QCOMPARE(server.headCount(), requests.size());
}

QTEST_GUILESS_MAIN(RedirectTest)
#include "RedirectTest.moc"
