#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

const char *const errorBody = R"({"error":{"code":"Code","message":"消息"}})";

/// The one result of a request that `script` answers.
Results resultOf(ScriptedHttpServer &server)
{
    ImageGeneratorService service;
    Results results;
    service.generateImage(u"p"_s, 2848, 1600, {}, configFor(server), results.collect());
    if (!QTest::qWaitFor([&results] { return !results.all.isEmpty(); }, 20'000)) {
        results.all.append(TransportError{u"no result"_s});
    }
    return results;
}

} // namespace

/// What counts as an answer, whatever its status and the way in which it is sent.
class HttpAnswerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyStatusReachesTheDecoder_data();
    void everyStatusReachesTheDecoder();
    void aPictureWithAnErrorStatusIsAPicture();
    void anAuthenticationChallengeIsAnAnswer_data();
    void anAuthenticationChallengeIsAnAnswer();
    void emptyAnswersAreDecoded_data();
    void emptyAnswersAreDecoded();
    void answersMayBeChunked();
    void answersMayEndWithTheConnection();
    void answersMayBePacked_data();
    void answersMayBePacked();
    void thirtyMegabytesAreRead();
};

void HttpAnswerTest::everyStatusReachesTheDecoder_data()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *status : {"200 OK",
                               "201 Created",
                               "300 Multiple Choices",
                               "400 Bad Request",
                               "401 Unauthorized",
                               "402 Payment Required",
                               "403 Forbidden",
                               "404 Not Found",
                               "405 Method Not Allowed",
                               "406 Not Acceptable",
                               "407 Proxy Authentication Required",
                               "408 Request Timeout",
                               "409 Conflict",
                               "410 Gone",
                               "413 Payload Too Large",
                               "418 I'm a teapot",
                               "422 Unprocessable Entity",
                               "429 Too Many Requests",
                               "499 Closed",
                               "500 Internal Server Error",
                               "501 Not Implemented",
                               "502 Bad Gateway",
                               "503 Service Unavailable",
                               "504 Gateway Timeout",
                               "599 Odd"}) {
        QTest::newRow(status) << QByteArray{status};
    }
}

void HttpAnswerTest::everyStatusReachesTheDecoder()
{
    QFETCH(const QByteArray, status);
    ScriptedHttpServer server{[status](const auto &) {
        return ScriptedAnswer::whole(errorBody, status);
    }};
    const Results results = resultOf(server);
    QCOMPARE(results.text(), u"[Code] 消息"_s);
    QVERIFY(results.isGenError());
    QCOMPARE(server.headCount(), 1);
}

void HttpAnswerTest::aPictureWithAnErrorStatusIsAPicture()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer(), "500 Internal Server Error");
    }};
    QVERIFY(resultOf(server).isPicture());
}

void HttpAnswerTest::anAuthenticationChallengeIsAnAnswer_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("status");
    const QByteArray unauthorized = "401 Unauthorized";
    for (const char *challenge :
         {R"(Basic realm="x")", R"(Digest realm="x", nonce="abc", qop="auth", algorithm=MD5)",
          R"(Bearer realm="x")", "Negotiate", "NTLM", "Unknown"}) {
        QTest::newRow(challenge) << QByteArray{"WWW-Authenticate: "} + challenge + "\r\n" << unauthorized;
    }
    QTest::newRow("several") << QByteArray{"WWW-Authenticate: Negotiate\r\nWWW-Authenticate: NTLM\r\n"
                                           "WWW-Authenticate: Basic realm=\"x\"\r\n"}
                             << unauthorized;
    QTest::newRow("of a proxy") << QByteArray{"Proxy-Authenticate: Basic realm=\"x\"\r\n"}
                                << QByteArray{"407 Proxy Authentication Required"};
}

void HttpAnswerTest::anAuthenticationChallengeIsAnAnswer()
{
    QFETCH(const QByteArray, header);
    QFETCH(const QByteArray, status);
    for (const char *credentials : {"", "user:password@"}) {
        ScriptedHttpServer server{[header, status](const auto &) {
            return ScriptedAnswer::whole(errorBody, status, header);
        }};
        ImageGeneratorService service;
        Results results;
        VolcengineConfig config = configFor(server);
        config.apiURL.insert(7, QString::fromLatin1(credentials));
        service.generateImage(u"p"_s, 2848, 1600, {}, config, results.collect());
        QTRY_COMPARE(results.all.size(), 1);
        QCOMPARE(results.text(), u"[Code] 消息"_s);
        QCOMPARE(server.headCount(), 1);
        QCOMPARE(server.requests().constFirst().header("Authorization"), "Bearer secret-key");
    }
}

void HttpAnswerTest::emptyAnswersAreDecoded_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("200") << QByteArray{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"};
    QTest::newRow("200 without a length") << QByteArray{"HTTP/1.1 200 OK\r\n\r\n"};
    QTest::newRow("204") << QByteArray{"HTTP/1.1 204 No Content\r\n\r\n"};
    QTest::newRow("500") << QByteArray{"HTTP/1.1 500 Internal Server Error\r\nContent-Length: 0\r\n\r\n"};
}

void HttpAnswerTest::emptyAnswersAreDecoded()
{
    QFETCH(const QByteArray, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return ScriptedAnswer{{{answer}}};
    }};
    const Results results = resultOf(server);
    QVERIFY(results.isGenError());
    QCOMPARE(results.text(), QString{});
}

void HttpAnswerTest::answersMayBeChunked()
{
    for (const qsizetype size : {1, 100, 100'000}) {
        ScriptedHttpServer server{[size](const auto &) {
            return ScriptedAnswer::chunked(pictureAnswer({20, 20}), size);
        }};
        QCOMPARE(resultOf(server).picture().size(), QSize(20, 20));
    }
}

void HttpAnswerTest::answersMayEndWithTheConnection()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer{{{"HTTP/1.1 200 OK\r\n\r\n" + pictureAnswer()}}};
    }};
    QCOMPARE(resultOf(server).text(), QString{});
}

void HttpAnswerTest::answersMayBePacked_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");
    QTest::newRow("picture") << pictureAnswer({200, 100}) << u""_s;
    QTest::newRow("picture and a line break") << pictureAnswer({200, 100}) + '\n' << u""_s;
    QTest::newRow("error and a line break") << QByteArray{errorBody} + '\n' << u"[Code] 消息"_s;
    QTest::newRow("plain text") << QByteArray{"Bad Gateway\r\n"} << u"Bad Gateway\r\n"_s;
}

void HttpAnswerTest::answersMayBePacked()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    ScriptedHttpServer server{[body](const auto &) {
        return ScriptedAnswer::encoded(body);
    }};
    const Results results = resultOf(server);
    QVERIFY(server.requests().constFirst().header("Accept-Encoding").contains("gzip"));
    QCOMPARE(results.text(), text);
    QCOMPARE(results.isPicture(), text.isEmpty());
}

void HttpAnswerTest::thirtyMegabytesAreRead()
{
    // Behind its end a picture file may carry anything.
    QByteArray bytes = samplePictures::png(samplePictures::picture({64, 64}));
    bytes += QByteArray(23'000'000, 'x');
    const QByteArray body = R"({"data":[{"b64_json":")" + bytes.toBase64() + R"("}]})";
    QVERIFY(body.size() > 30'000'000);
    ScriptedHttpServer server{[body](const auto &) {
        return ScriptedAnswer::whole(body);
    }};
    QCOMPARE(resultOf(server).picture().size(), QSize(64, 64));
}

QTEST_GUILESS_MAIN(HttpAnswerTest)
#include "HttpAnswerTest.moc"
