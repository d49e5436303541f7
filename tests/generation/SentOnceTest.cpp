#include "generation/Client.h"
#include "platform/ChineseTranslations.h"
#include "support/TestProgram.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

const char *const refusal = R"({"error":{"code":"TooLarge","message":"m"}})";

/// So much that a part of it still waits to be sent when the connection ends or the response comes.
QString longPrompt()
{
    return u"0123456789"_s.repeated(2'000'000);
}

} // namespace

/// A generation is paid for, so a server must never be sent the same request twice: neither after an upload
/// that was broken off, nor after a response that came before its end, nor on a kept connection that has
/// died.
class SentOnceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseTranslations(*QCoreApplication::instance()); }

    void anUploadThatIsBrokenOff_data()
    {
        QTest::addColumn<qsizetype>("bytes");
        QTest::newRow("with the headers") << qsizetype{1};
        QTest::newRow("within the body") << qsizetype{100'000};
        QTest::newRow("late in the body") << qsizetype{16'000'000};
    }

    void anUploadThatIsBrokenOff()
    {
        QFETCH(const qsizetype, bytes);
        ScriptedHttpServer server{pictureResponse()};
        server.hangUpAfterBytes(bytes);
        QCOMPARE(Client{}.generate(server, longPrompt()), Outcome::closed());
        QCOMPARE(server.headCount(), 1);
        QCOMPARE(server.requestCount(), 0);
    }

    void anEarlyResponseWhoseServerTakesTheRest_data()
    {
        QTest::addColumn<QByteArray>("status");
        for (const char *status :
             {"200 OK", "400 Bad Request", "401 Unauthorized", "413 Payload Too Large"}) {
            QTest::newRow(status) << QByteArray{status};
        }
    }

    void anEarlyResponseWhoseServerTakesTheRest()
    {
        QFETCH(const QByteArray, status);
        ScriptedResponse response = ScriptedResponse::whole(refusal, status);
        response.end = ScriptedResponse::End::stayOpen;
        ScriptedHttpServer server{faultOnce(response)};
        server.answerAfterBytes(1);
        survive(server, configFor(server), Outcome::shown(u"[TooLarge] m"_s), 30s, longPrompt());
    }

    void anEarlyResponseThatEndsTheConnection_data()
    {
        QTest::addColumn<ScriptedResponse::End>("end");
        QTest::addColumn<qsizetype>("bytes");
        for (const int bytes : {1, 100'000, 10'000'000}) {
            QTest::addRow("closed after %d", bytes) << ScriptedResponse::End::close << qsizetype{bytes};
            QTest::addRow("reset after %d", bytes) << ScriptedResponse::End::reset << qsizetype{bytes};
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

QUILMORA_TEST(SentOnceTest, runCoreTest)
#include "SentOnceTest.moc"
