#include "generation/Client.h"
#include "support/TestProgram.h"

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

const QByteArray errorBody = R"({"error":{"code":"Code","message":"消息"}})";

Outcome shownError()
{
    return Outcome::shown(u"[Code] 消息"_s);
}

} // namespace

/// What is decoded, whatever its status and the way in which it is sent.
class HttpResponseTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statuses_data()
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

    void statuses()
    {
        QFETCH(const QByteArray, status);
        for (const QByteArray headers : {"", "Retry-After: 0\r\n"}) {
            const ScriptedHttpServer server{faultOnce(ScriptedResponse::whole(errorBody, status, headers))};
            survive(server, shownError());
        }
    }

    void bodies_data()
    {
        QTest::addColumn<ScriptedResponse>("response");
        QTest::addColumn<Outcome>("outcome");
        const auto row = [](const char *name, const ScriptedResponse &response, const Outcome &outcome) {
            QTest::newRow(name) << response << outcome;
        };
        row("a picture with an error status",
            ScriptedResponse::whole(pictureAnswer(), "500 Internal Server Error"), Outcome::picture());
        for (const char *head : {"200 OK\r\nContent-Length: 0\r\n", "200 No Length\r\n", "204 No Content\r\n",
                                 "500 Internal Server Error\r\nContent-Length: 0\r\n"}) {
            row(head, {{{QByteArray{"HTTP/1.1 "} + head + "\r\n"}}}, Outcome::shown({}));
        }
        for (const int size : {1, 100, 100'000}) {
            row(qPrintable(u"chunks of %1"_s.arg(size)),
                ScriptedResponse::chunked(pictureAnswer({20, 20}), size), Outcome::picture({20, 20}));
        }
        const auto compressed = [row](const char *name, const QByteArray &body, const Outcome &outcome) {
            row(name, ScriptedResponse::encoded(body), outcome);
        };
        const Outcome large = Outcome::picture({200, 100});
        compressed("compressed picture and a line break", pictureAnswer({200, 100}) + '\n', large);
        compressed("compressed error and a line break", errorBody + '\n', shownError());
        compressed("compressed text", "Bad Gateway\r\n", Outcome::shown(u"Bad Gateway\r\n"_s));
    }

    void bodies()
    {
        QFETCH(const ScriptedResponse, response);
        QFETCH(const Outcome, outcome);
        const ScriptedHttpServer server{faultOnce(response)};
        survive(server, outcome);
    }

    void authenticationChallenges_data()
    {
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<QByteArray>("headers");
        for (const char *scheme :
             {R"(Basic realm="x")", R"(Digest realm="x", nonce="abc", qop="auth", algorithm=MD5)",
              R"(Bearer realm="x")", "Negotiate", "NTLM", "Unknown", "",
              "Negotiate\r\nWWW-Authenticate: NTLM\r\nWWW-Authenticate: Basic realm=\"x\""}) {
            QTest::newRow(scheme) << QByteArray{"401 Unauthorized"}
                                  << QByteArray{"WWW-Authenticate: "} + scheme + "\r\n";
        }
        QTest::newRow("of a proxy") << QByteArray{"407 Proxy Authentication Required"}
                                    << QByteArray{"Proxy-Authenticate: Basic realm=\"x\"\r\n"};
    }

    void authenticationChallenges()
    {
        QFETCH(const QByteArray, status);
        QFETCH(const QByteArray, headers);
        for (const QString &credentials : {u""_s, u"user:password@"_s}) {
            const ScriptedHttpServer server{faultOnce(ScriptedResponse::whole(errorBody, status, headers))};
            VolcengineConfig config = configFor(server);
            config.apiURL.insert(7, credentials);
            survive(server, config, shownError());
            QCOMPARE(server.requests().constFirst().header("Authorization"), "Bearer secret-key");
        }
    }
};

QUILMORA_TEST(HttpResponseTest, runCoreTest)
#include "HttpResponseTest.moc"
