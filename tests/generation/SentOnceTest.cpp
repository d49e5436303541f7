#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

void generate(ImageGeneratorService &service, const ScriptedHttpServer &server, Results &results,
              const QString &prompt = u"p"_s)
{
    service.generateImage(prompt, 2848, 1600, {}, configFor(server), results.collect());
}

} // namespace

/// A generation is paid for, so a server must never be sent the same request twice.
class SentOnceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRequestWithoutAnAnswerIsNotRepeated_data();
    void aRequestWithoutAnAnswerIsNotRepeated();
    void anUploadThatIsCutIsNotRepeated_data();
    void anUploadThatIsCutIsNotRepeated();
    void aKeptConnectionThatDiesWhileIdleDoesNotMatter_data();
    void aKeptConnectionThatDiesWhileIdleDoesNotMatter();
    void aConnectionThatDiesAtTheSecondRequest();
};

void SentOnceTest::aRequestWithoutAnAnswerIsNotRepeated_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::newRow("closed") << ScriptedAnswer::hangUp();
    QTest::newRow("closed later") << ScriptedAnswer::hangUp().after(100ms);
    QTest::newRow("torn down") << ScriptedAnswer::reset();
    QTest::newRow("torn down later") << ScriptedAnswer::reset().after(100ms);
    QTest::newRow("half a status line") << ScriptedAnswer{{{"HTTP/1."}}};
    QTest::newRow("half of the headers") << ScriptedAnswer{{{"HTTP/1.1 200 OK\r\nServer: x\r\n"}}};
    QTest::newRow("cut body") << ScriptedAnswer::cut("{", 100);
    QTest::newRow("challenge") << ScriptedAnswer::whole("{}", "401 Unauthorized",
                                                        "WWW-Authenticate: Basic realm=\"x\"\r\n");
    QTest::newRow("too many requests")
        << ScriptedAnswer::whole("{}", "429 Too Many Requests", "Retry-After: 0\r\n");
    QTest::newRow("unavailable") << ScriptedAnswer::whole("{}", "503 Unavailable", "Retry-After: 0\r\n");
    QTest::newRow("timed out") << ScriptedAnswer::whole("{}", "408 Request Timeout");
}

void SentOnceTest::aRequestWithoutAnAnswerIsNotRepeated()
{
    QFETCH(ScriptedAnswer, answer);
    ScriptedHttpServer server{[answer](const auto &) {
        return answer;
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(!results.isPicture());

    // A request for which the server has been asked since then shows that nothing is still to come.
    generate(service, server, results, u"second"_s);
    QTRY_COMPARE(results.all.size(), 2);
    QCOMPARE(server.headCount(), 2);
    QVERIFY(server.requests().constLast().body.contains("second"));
}

void SentOnceTest::anUploadThatIsCutIsNotRepeated_data()
{
    QTest::addColumn<qsizetype>("bytes");
    QTest::newRow("with the headers") << qsizetype{1};
    QTest::newRow("within the body") << qsizetype{100'000};
    QTest::newRow("late in the body") << qsizetype{4'000'000};
}

void SentOnceTest::anUploadThatIsCutIsNotRepeated()
{
    QFETCH(const qsizetype, bytes);
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    server.hangUpAfterBytes(bytes);
    ImageGeneratorService service;
    Results results;
    generate(service, server, results, u"0123456789"_s.repeated(500'000));
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isTransportError());
    QCOMPARE(server.headCount(), 1);
    QCOMPARE(server.requestCount(), 0);
}

void SentOnceTest::aKeptConnectionThatDiesWhileIdleDoesNotMatter_data()
{
    QTest::addColumn<ScriptedAnswer::End>("end");
    QTest::newRow("closed") << ScriptedAnswer::End::close;
    QTest::newRow("torn down") << ScriptedAnswer::End::reset;
    QTest::newRow("silent") << ScriptedAnswer::End::stayOpen;
}

void SentOnceTest::aKeptConnectionThatDiesWhileIdleDoesNotMatter()
{
    QFETCH(const ScriptedAnswer::End, end);
    ScriptedHttpServer server{[end](const auto &) {
        ScriptedAnswer answer = ScriptedAnswer::keptAlive(pictureAnswer());
        answer.pieces.append({{}, 5ms});
        answer.end = end;
        return answer;
    }};
    ImageGeneratorService service;
    Results results;
    for (int count = 1; count <= 5; ++count) {
        generate(service, server, results);
        QTRY_COMPARE(results.all.size(), count);
        QVERIFY2(results.isPicture(count - 1), qPrintable(results.text(count - 1)));
        QCOMPARE(server.headCount(), count);
    }
}

void SentOnceTest::aConnectionThatDiesAtTheSecondRequest()
{
    // Good for the first request of all, and dies on every later one.
    auto first = std::make_shared<std::atomic_bool>(true);
    ScriptedHttpServer server{[first](const auto &) {
        return first->exchange(false) ? ScriptedAnswer::keptAlive(pictureAnswer()) : ScriptedAnswer::reset();
    }};
    ImageGeneratorService service;
    Results results;
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 1);
    generate(service, server, results);
    QTRY_COMPARE(results.all.size(), 2);
    QVERIFY(results.isPicture(0));
    QVERIFY(results.isTransportError(1));
    QCOMPARE(server.headCount(), 2);
}

QTEST_GUILESS_MAIN(SentOnceTest)
#include "SentOnceTest.moc"
