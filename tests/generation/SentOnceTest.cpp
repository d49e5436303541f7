#include "generation/Client.h"

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

const char *const refusal = R"({"error":{"code":"TooLarge","message":"m"}})";

/// So much that a part of it still waits to be sent when the connection ends or the response comes.
QString longPrompt() { return u"0123456789"_s.repeated(2'000'000); }

} // namespace

/// A generation is paid for, so a server must never be sent the same request twice: neither after an upload
/// that was broken off, nor after a response that came before its end, nor on a kept connection that has
/// died.
class SentOnceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUploadThatIsBrokenOff()
    {
        // With the headers, within the body, and late in it.
        for (const qsizetype bytes : {1, 100'000, 16'000'000}) {
            const FailureNote note{QByteArray::number(bytes)};
            ScriptedHttpServer server{pictureResponse()};
            server.hangUpAfterBytes(bytes);
            QCOMPARE(Client{}.generate(server, longPrompt()), Outcome::closed());
            QCOMPARE(server.headCount(), 1);
            QCOMPARE(server.requestCount(), 0);
        }
    }

    void anEarlyResponseWhoseServerTakesTheRest()
    {
        for (const QByteArray status :
             {"200 OK", "400 Bad Request", "401 Unauthorized", "413 Payload Too Large"}) {
            const FailureNote note{status};
            ScriptedResponse response = ScriptedResponse::whole(refusal, status);
            response.end = ScriptedResponse::End::stayOpen;
            ScriptedHttpServer server{faultOnce(response)};
            server.answerAfterBytes(1);
            survive(server, configFor(server), Outcome::shown(u"[TooLarge] m"_s), 30s, longPrompt());
        }
    }

    void anEarlyResponseThatEndsTheConnection_data()
    {
        const DataRows<ScriptedResponse::End, qsizetype> row{"end", "bytes"};
        for (const int bytes : {1, 100'000, 10'000'000}) {
            row("closed after " + QByteArray::number(bytes), ScriptedResponse::End::close, bytes);
            row("reset after " + QByteArray::number(bytes), ScriptedResponse::End::reset, bytes);
        }
    }

    void anEarlyResponseThatEndsTheConnection()
    {
        QFETCH(const ScriptedResponse::End, end);
        QFETCH(const qsizetype, bytes);
        ScriptedResponse response = ScriptedResponse::whole(refusal, "413 Payload Too Large");
        response.end = end;
        ScriptedHttpServer server{faultOnce(response)};
        server.answerAfterBytes(bytes);
        Client client;
        const Outcome outcome = client.generate(server, longPrompt());
        // With the connection goes what it has not brought yet.
        QVERIFY2(outcome == Outcome::shown(u"[TooLarge] m"_s) || outcome == Outcome::closed(),
                 qPrintable(outcome.text));
        QCOMPARE(server.headCount(), 1);

        client.generate(server, u"good"_s);
        QCOMPARE(client.outcomes.size(), 2);
        QCOMPARE(server.headCount(), 2);
    }

    void aKeptConnectionThatDiesWhileIdle_data()
    {
        QTest::addColumn<ScriptedResponse::End>("end");
        QTest::newRow("closed") << ScriptedResponse::End::close;
        QTest::newRow("reset") << ScriptedResponse::End::reset;
        QTest::newRow("silent") << ScriptedResponse::End::stayOpen;
    }

    void aKeptConnectionThatDiesWhileIdle()
    {
        QFETCH(const ScriptedResponse::End, end);
        ScriptedResponse response = ScriptedResponse::keptAlive(pictureAnswer());
        response.pieces.append({{}, 5ms});
        response.end = end;
        const ScriptedHttpServer server{response};
        Client client;
        for (int count = 1; count <= 5; ++count) {
            QCOMPARE(client.generate(server), Outcome::picture());
            QCOMPARE(server.headCount(), count);
        }
    }

    void aKeptConnectionThatDiesAtTheSecondRequest()
    {
        const ScriptedHttpServer server{[isFirst = std::make_shared<std::atomic_bool>(true)](const auto &) {
            return isFirst->exchange(false) ? ScriptedResponse::keptAlive(pictureAnswer())
                                            : ScriptedResponse::reset();
        }};
        Client client;
        QCOMPARE(client.generate(server), Outcome::picture());
        QCOMPARE(client.generate(server), Outcome::closed());
        QCOMPARE(server.headCount(), 2);
    }
};

QUILMORA_TEST(SentOnceTest, runChineseTest)
#include "SentOnceTest.moc"
#include "support/FailureNote.h"
