#include "generation/Client.h"

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

const QByteArray errorBody = R"({"error":{"code":"Code","message":"消息"}})";

Outcome shownError() { return Outcome::shown(u"[Code] 消息"_s); }

const QByteArray ok = "HTTP/1.1 200 OK\r\n";

Outcome noData() { return Outcome::shown(u"响应缺少 data 字段：{}"_s); }

ScriptedResponse reset(const QByteArray &bytes) { return {{{bytes}}, ScriptedResponse::End::reset}; }

ScriptedResponse closed(const QByteArray &bytes) { return {{{bytes}}}; }

void row(const QByteArray &name, const ScriptedResponse &response, const Outcome &outcome)
{
    QTest::newRow(name.constData()) << response << outcome;
}

void addColumns()
{
    QTest::addColumn<ScriptedResponse>("response");
    QTest::addColumn<Outcome>("outcome");
}

void run(std::chrono::milliseconds limit = 30s)
{
    QFETCH(const ScriptedResponse, response);
    QFETCH(const Outcome, outcome);
    const ScriptedHttpServer server{faultOnce(response)};
    survive(server, outcome, limit);
}

} // namespace

/// What is decoded, whatever its status and however it is sent, and every way in which a response can go
/// wrong: what is shown of it, that it is shown once, that the request does not go out a second time, and
/// that the next one works.
class HttpResponseTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statuses()
    {
        for (const int status : {200, 201, 300, 400, 401, 402, 403, 404, 405, 406, 407, 408, 409,
                                 410, 413, 418, 422, 429, 499, 500, 501, 502, 503, 504, 599}) {
            for (const QByteArray headers : {"", "Retry-After: 0\r\n"}) {
                const FailureNote note{QByteArray::number(status) + ' ' + headers};
                const QByteArray line = QByteArray::number(status) + " Status";
                const ScriptedHttpServer server{faultOnce(ScriptedResponse::whole(errorBody, line, headers))};
                survive(server, shownError());
            }
        }
    }

    void bodies_data()
    {
        addColumns();
        row("a picture with an error status",
            ScriptedResponse::whole(pictureAnswer(), "500 Internal Server Error"), Outcome::picture());
        for (const char *head : {"200 OK\r\nContent-Length: 0\r\n", "200 No Length\r\n", "204 No Content\r\n",
                                 "500 Internal Server Error\r\nContent-Length: 0\r\n"}) {
            row(head, {{{QByteArray{"HTTP/1.1 "} + head + "\r\n"}}}, Outcome::shown({}));
        }
        for (const int size : {1, 100, 100'000}) {
            row("chunks of " + QByteArray::number(size),
                ScriptedResponse::chunked(pictureAnswer({20, 20}), size), Outcome::picture({20, 20}));
        }
        const auto compressed = [](const char *name, const QByteArray &body, const Outcome &outcome) {
            row(name, ScriptedResponse::encoded(body), outcome);
        };
        const Outcome large = Outcome::picture({200, 100});
        compressed("compressed picture and a line break", pictureAnswer({200, 100}) + '\n', large);
        compressed("compressed error and a line break", errorBody + '\n', shownError());
        compressed("compressed text", "Bad Gateway\r\n", Outcome::shown(u"Bad Gateway\r\n"_s));
    }

    void bodies() { run(); }

    void authenticationChallenges_data()
    {
        const DataRows<QByteArray, QByteArray> row{"status", "headers"};
        for (const char *scheme :
             {R"(Basic realm="x")", R"(Digest realm="x", nonce="abc", qop="auth", algorithm=MD5)",
              R"(Bearer realm="x")", "Negotiate", "NTLM", "Unknown", "",
              "Negotiate\r\nWWW-Authenticate: NTLM\r\nWWW-Authenticate: Basic realm=\"x\""}) {
            row(scheme, "401 Unauthorized", QByteArray{"WWW-Authenticate: "} + scheme + "\r\n");
        }
        row("of a proxy", "407 Proxy Authentication Required", "Proxy-Authenticate: Basic realm=\"x\"\r\n");
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

    void aLostConnection_data()
    {
        addColumns();
        const auto lost = [](const QByteArray &name, const ScriptedResponse &response) {
            row(name, response, Outcome::closed());
        };
        lost("closed before the response", ScriptedResponse::hangUp());
        lost("closed later", ScriptedResponse::hangUp().after(100ms));
        lost("reset before the response", ScriptedResponse::reset());
        lost("reset later", ScriptedResponse::reset().after(100ms));
        const QByteArray length = ok + "Content-Length: 100\r\n\r\n";
        for (const auto &[place, bytes] :
             QList<std::pair<QByteArray, QByteArray>>{{"within the status line", "HTTP/1."},
                                                      {"after a header", ok + "Server: x\r\n"},
                                                      {"within the headers", ok + "Content-Le"},
                                                      {"after the headers", length},
                                                      {"within the body", length + "{"}}) {
            lost("closed " + place, closed(bytes));
            lost("reset " + place, reset(bytes));
        }
        lost("closed late in the body", ScriptedResponse::cut(pictureAnswer().chopped(9), 100'000));
        lost("reset within a body of unknown length", reset(ok + "\r\n{"));
        lost("closed within an error's body",
             closed("HTTP/1.1 500 Oops\r\nContent-Length: 100\r\n\r\n{\"error\":{}}"));
        lost("closed within a challenge's body",
             closed(
                 "HTTP/1.1 401 No\r\nWWW-Authenticate: Basic\r\nContent-Length: 100\r\n\r\n{\"error\":{}}"));
    }

    void aLostConnection() { run(); }

    void silence_data()
    {
        addColumns();
        const auto silent = [](const QByteArray &name, const QByteArray &bytes) {
            row(name, {{{bytes}}, ScriptedResponse::End::stayOpen}, Outcome::timedOut());
        };
        row("before the response", ScriptedResponse::silence(), Outcome::timedOut());
        silent("within the status line", "HTTP/1.");
        silent("within the headers", ok);
        silent("within the body", ok + "Content-Length: 9\r\n\r\n{");
        silent("within an error's body", "HTTP/1.1 400 Bad\r\nContent-Length: 9\r\n\r\n{");
        silent("within a chunk", ok + "Transfer-Encoding: chunked\r\n\r\n9\r\n{");
        silent("within a body of unknown length", ok + "\r\n{}");
    }

    void silence() { run(1s); }

    void bytesJustInTime()
    {
        // In all nearly twice as long as the limit.
        static constexpr auto limit = 2000ms;
        const ScriptedHttpServer server{
            faultOnce(ScriptedResponse::dripping(pictureAnswer(), 3, limit * 3 / 5))};
        survive(server, Outcome::picture(), limit);
    }

    void aWrongLength_data()
    {
        addColumns();
        const QByteArray body = pictureAnswer();
        const QByteArray right = QByteArray::number(body.size());
        const auto withLength = [&body](const QByteArray &name, const QByteArray &length,
                                        const Outcome &outcome) {
            row(name, closed(ok + "Content-Length: " + length + "\r\n\r\n" + body), outcome);
        };
        row("none", closed(ok + "\r\n" + body), Outcome::picture());
        withLength("one byte too much", QByteArray::number(body.size() + 1), Outcome::closed());
        withLength("less than comes", "5", Outcome::shown(QString::fromLatin1(body.first(5))));
        withLength("nothing, and a body", "0", Outcome::shown({}));
        withLength("negative", "-1", Outcome::picture());
        withLength("no number", "many", Outcome::picture());
        withLength("beyond every number", "99999999999999999999", Outcome::picture());
        withLength("twice the same", right + "\r\nContent-Length: " + right, Outcome::picture());
        row("with chunks",
            closed(ok + "Content-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n"),
            noData());
    }

    void aWrongLength() { run(); }

    void brokenChunks_data()
    {
        addColumns();
        const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
        row("closed between two", closed(chunked + "2\r\n{}\r\n"), Outcome::closed());
        row("closed within one", closed(chunked + "64\r\n{}"), Outcome::closed());
        row("reset within one", reset(chunked + "64\r\n{}"), Outcome::closed());
        row("closed within a size", closed(chunked + "6"), Outcome::closed());
        // What is no size reads as the end.
        const Outcome nothing = Outcome::shown({});
        row("a size that is no number", closed(chunked + "zz\r\n{}\r\n0\r\n\r\n"), nothing);
        row("a size beyond every number", closed(chunked + "fffffffffffffffff\r\n{}\r\n0\r\n\r\n"), nothing);
        row("a negative size", closed(chunked + "-2\r\n{}\r\n0\r\n\r\n"), nothing);
    }

    void brokenChunks() { run(); }

    void compression_data()
    {
        addColumns();
        const auto encoded = [](const QByteArray &bytes, const QByteArray &coding) {
            return ScriptedResponse::whole(bytes, "200 OK", "Content-Encoding: " + coding + "\r\n");
        };
        for (const QByteArray &coding : offeredCodings()) {
            const QByteArray body = ScriptedResponse::compressed(pictureAnswer({200, 100}), coding);
            row(coding + ", whole", encoded(body, coding), Outcome::picture({200, 100}));
            const Outcome unusable = Outcome::lost(u"解压失败"_s);
            row(coding + ", not compressed at all", encoded("Bad Gateway", coding), unusable);
            row(coding + ", damaged", encoded(QByteArray{body}.replace(20, 8, "damaged!"), coding), unusable);
            // The first bytes of a compressed body decompress to nothing, without an error.
            row(coding + ", truncated after its head", encoded(body.first(10), coding), Outcome::shown({}));
        }
        row("of a kind that was not asked for", encoded(pictureAnswer(), "compress"), Outcome::picture());
    }

    void compression() { run(); }

    void garbage_data()
    {
        addColumns();
        const QByteArray empty = "Content-Length: 2\r\n\r\n{}";
        const QByteArray interim = "HTTP/1.1 100 Continue\r\n\r\n";
        row("another protocol's greeting", closed("220 mail.example.org ESMTP\r\n"), Outcome::closed());
        row("a web page without headers", closed("<html>\r\n\r\n</html>"), Outcome::closed());
        row("a status that is no number", closed("HTTP/1.1 abc OK\r\n\r\n{}"), Outcome::closed());
        row("no status", closed("HTTP/1.1\r\n\r\n{}"), Outcome::closed());
        row("a version from the future", closed("HTTP/9.9 200 OK\r\n\r\n{}"), noData());
        row("bytes of all values", closed(QByteArray::fromHex("00ff80fe01").repeated(20'000)),
            Outcome::closed());
        row("letters without an end", closed(QByteArray(1'000'000, 'x')), Outcome::closed());
        row("an empty line first", closed("\r\n" + ok + empty), noData());
        row("a header without a colon", closed(ok + "nonsense\r\n" + empty), noData());
        row("a NUL in a header", closed(ok + QByteArray{"X: a\0b\r\n", 8} + empty), noData());
        row("an interim response alone", closed(interim), Outcome::closed());
        row("an interim response first", closed(interim + ok + empty), noData());
        row("another protocol switched to", closed("HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n"),
            Outcome::shown({}));
        row("a second response behind the first", closed(ok + empty + ok + "\r\nother"), noData());
    }

    void garbage() { run(); }

    void theShippedLimitIsTwoMinutes() { QCOMPARE(ImageGeneratorService::IdleLimits{}.request, 120s); }
};

QUILMORA_TEST(HttpResponseTest, runChineseTest)
#include "HttpResponseTest.moc"
