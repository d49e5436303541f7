#include "generation/FaultRun.h"
#include "platform/ChineseCatalogue.h"
#include "support/ContentCoding.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

const QByteArray ok = "HTTP/1.1 200 OK\r\n";

Outcome connectionClosed()
{
    return Outcome::lost(u"连接已关闭"_s);
}

ScriptedAnswer torn(const QByteArray &bytes)
{
    return {{{bytes}}, ScriptedAnswer::End::reset};
}

ScriptedAnswer closed(const QByteArray &bytes)
{
    return {{{bytes}}};
}

ScriptedAnswer stalled(const QByteArray &bytes)
{
    return {{{bytes}}, ScriptedAnswer::End::stayOpen};
}

void row(const QByteArray &name, const ScriptedAnswer &answer, const Outcome &outcome)
{
    QTest::newRow(name.constData()) << answer << outcome;
}

void addColumns()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::addColumn<Outcome>("outcome");
}

} // namespace

/// Every way in which an answer can go wrong: what is shown of it, that it is told once, that the request
/// does not go out a second time, and that the next one works.
class FaultyAnswerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void aLostConnection_data();
    void aLostConnection() { run(); }
    void silence_data();
    void silence() { run(1s); }
    void bytesJustInTime();
    void aWrongLength_data();
    void aWrongLength() { run(); }
    void brokenChunks_data();
    void brokenChunks() { run(); }
    void packing_data();
    void packing() { run(); }
    void garbage_data();
    void garbage() { run(); }
    void challenges_data();
    void challenges() { run(); }
    void theShippedLimitIsTwoMinutes();

private:
    static void run(std::chrono::milliseconds limit = 30s);
};

void FaultyAnswerTest::run(std::chrono::milliseconds limit)
{
    QFETCH(const ScriptedAnswer, answer);
    QFETCH(const Outcome, outcome);
    const ScriptedHttpServer server{faultOnce(answer)};
    survive(server, outcome, limit);
}

void FaultyAnswerTest::aLostConnection_data()
{
    addColumns();
    row("closed before the answer", ScriptedAnswer::hangUp(), connectionClosed());
    row("torn down before the answer", ScriptedAnswer::reset(), connectionClosed());
    row("closed within the status line", closed("HTTP/1."), connectionClosed());
    row("torn down within the status line", torn("HTTP/1."), connectionClosed());
    row("closed within the headers", closed(ok + "Content-Le"), connectionClosed());
    row("torn down within the headers", torn(ok + "Content-Le"), connectionClosed());
    row("closed after the headers", closed(ok + "Content-Length: 100\r\n\r\n"), connectionClosed());
    row("torn down after the headers", torn(ok + "Content-Length: 100\r\n\r\n"), connectionClosed());
    row("closed within the body", ScriptedAnswer::cut(pictureAnswer().chopped(9), 100'000),
        connectionClosed());
    row("torn down within the body", torn(ok + "Content-Length: 100\r\n\r\n{"), connectionClosed());
    row("torn down within a body of unknown length", torn(ok + "\r\n{"), connectionClosed());
}

void FaultyAnswerTest::silence_data()
{
    addColumns();
    const Outcome timedOut = Outcome::lost(u"请求超时"_s);
    row("before the answer", ScriptedAnswer::silence(), timedOut);
    row("within the status line", stalled("HTTP/1."), timedOut);
    row("within the headers", stalled(ok), timedOut);
    row("within the body", stalled(ok + "Content-Length: 9\r\n\r\n{"), timedOut);
    row("within a chunk", stalled(ok + "Transfer-Encoding: chunked\r\n\r\n9\r\n{"), timedOut);
    row("within a body of unknown length", stalled(ok + "\r\n{}"), timedOut);
}

void FaultyAnswerTest::bytesJustInTime()
{
    // In all nearly twice as long as the limit.
    static constexpr auto limit = 2000ms;
    const ScriptedHttpServer server{faultOnce(ScriptedAnswer::dripping(pictureAnswer(), 3, limit * 3 / 5))};
    survive(server, Outcome::picture(), limit);
}

void FaultyAnswerTest::aWrongLength_data()
{
    addColumns();
    const Outcome noData = Outcome::told(u"响应缺少 data 字段：{}"_s);
    const QByteArray body = pictureAnswer();
    const auto promising = [&body](const QByteArray &length) {
        return closed(ok + "Content-Length: " + length + "\r\n\r\n" + body);
    };
    const QByteArray right = QByteArray::number(body.size());
    row("none", closed(ok + "\r\n" + body), Outcome::picture());
    row("one byte too much", promising(QByteArray::number(body.size() + 1)), connectionClosed());
    row("less than comes", promising("5"), Outcome::told(QString::fromLatin1(body.first(5))));
    row("nothing, and a body", promising("0"), Outcome::told({}));
    row("negative", promising("-1"), Outcome::picture());
    row("no number", promising("many"), Outcome::picture());
    row("beyond every number", promising("99999999999999999999"), Outcome::picture());
    row("twice the same", promising(right + "\r\nContent-Length: " + right), Outcome::picture());
    row("with chunks",
        closed(ok + "Content-Length: 3\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n"), noData);
}

void FaultyAnswerTest::brokenChunks_data()
{
    addColumns();
    const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
    row("whole", ScriptedAnswer::chunked(pictureAnswer(), 100), Outcome::picture());
    row("closed between two", closed(chunked + "2\r\n{}\r\n"), connectionClosed());
    row("closed within one", closed(chunked + "64\r\n{}"), connectionClosed());
    row("torn down within one", torn(chunked + "64\r\n{}"), connectionClosed());
    row("closed within a size", closed(chunked + "6"), connectionClosed());
    // What is no size reads as the end.
    const Outcome nothing = Outcome::told({});
    row("a size that is no number", closed(chunked + "zz\r\n{}\r\n0\r\n\r\n"), nothing);
    row("a size beyond every number", closed(chunked + "fffffffffffffffff\r\n{}\r\n0\r\n\r\n"), nothing);
    row("a negative size", closed(chunked + "-2\r\n{}\r\n0\r\n\r\n"), nothing);
}

void FaultyAnswerTest::packing_data()
{
    addColumns();
    for (const QByteArray &coding : offeredCodings()) {
        const QByteArray body = contentCoding::encode(pictureAnswer({200, 100}), coding);
        const auto encoded = [&coding](const QByteArray &bytes) {
            return ScriptedAnswer::whole(bytes, "200 OK", "Content-Encoding: " + coding + "\r\n");
        };
        row(coding + ", whole", encoded(body), Outcome::picture());
        const Outcome unusable = Outcome::lost(u"解压失败"_s);
        row(coding + ", not compressed at all", encoded("Bad Gateway"), unusable);
        row(coding + ", damaged", encoded(QByteArray{body}.replace(20, 8, "damaged!")), unusable);
        // The first bytes of a compressed body decompress to nothing, without an error.
        row(coding + ", truncated after its head", encoded(body.first(10)), Outcome::told({}));
    }
    row("of a kind that was not asked for",
        ScriptedAnswer::whole(pictureAnswer(), "200 OK", "Content-Encoding: compress\r\n"),
        Outcome::picture());
}

void FaultyAnswerTest::garbage_data()
{
    addColumns();
    const Outcome noData = Outcome::told(u"响应缺少 data 字段：{}"_s);
    row("another protocol's greeting", closed("220 mail.example.org ESMTP\r\n"), connectionClosed());
    row("a web page without headers", closed("<html>\r\n\r\n</html>"), connectionClosed());
    row("a status that is no number", closed("HTTP/1.1 abc OK\r\n\r\n{}"), connectionClosed());
    row("no status", closed("HTTP/1.1\r\n\r\n{}"), connectionClosed());
    row("a version from the future", closed("HTTP/9.9 200 OK\r\n\r\n{}"), noData);
    row("bytes of all values", closed(QByteArray::fromHex("00ff80fe01").repeated(20'000)),
        connectionClosed());
    row("letters without an end", closed(QByteArray(1'000'000, 'x')), connectionClosed());
    row("an empty line first", closed("\r\n" + ok + "Content-Length: 2\r\n\r\n{}"), noData);
    row("a header without a colon", closed(ok + "nonsense\r\nContent-Length: 2\r\n\r\n{}"), noData);
    row("a NUL in a header", closed(ok + QByteArray{"X: a\0b\r\n", 8} + "Content-Length: 2\r\n\r\n{}"),
        noData);
    row("an interim answer and nothing else", closed("HTTP/1.1 100 Continue\r\n\r\n"), connectionClosed());
    row("an interim answer before the answer",
        closed("HTTP/1.1 100 Continue\r\n\r\n" + ok + "Content-Length: 2\r\n\r\n{}"), noData);
    row("another protocol switched to", closed("HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\n\r\n"),
        Outcome::told({}));
    row("a second answer behind the first", closed(ok + "Content-Length: 2\r\n\r\n{}" + ok + "\r\nother"),
        noData);
}

void FaultyAnswerTest::challenges_data()
{
    addColumns();
    const QByteArray body = R"({"error":{"code":"AuthenticationError","message":"no"}})";
    for (const char *scheme :
         {R"(Basic realm="x")", R"(Digest realm="x", nonce="abc", qop="auth", algorithm=MD5)", "NTLM",
          "Negotiate", R"(Bearer realm="x")", "Unknown", ""}) {
        QTest::newRow(scheme) << ScriptedAnswer::whole(body, "401 Unauthorized",
                                                       QByteArray{"WWW-Authenticate: "} + scheme + "\r\n")
                              << Outcome::told(u"[AuthenticationError] no"_s);
    }
}

void FaultyAnswerTest::theShippedLimitIsTwoMinutes()
{
    QCOMPARE(ImageGeneratorService::IdleLimits{}.request, 120s);
}

QTEST_GUILESS_MAIN(FaultyAnswerTest)
#include "FaultyAnswerTest.moc"
