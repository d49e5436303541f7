#include "generation/FaultRun.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

const char *const refusal = R"({"error":{"code":"TooLarge","message":"m"}})";

/// So much that a part of it still waits to be sent when the answer comes.
QString longPrompt()
{
    return u"0123456789"_s.repeated(2'000'000);
}

} // namespace

/// A server that answers before it was sent the whole request.
class EarlyAnswerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void theAnswerCountsIfTheRestIsTaken_data() { addStatuses(); }
    void theAnswerCountsIfTheRestIsTaken();
    void aConnectionThatEndsWithItIsToldOnce_data();
    void aConnectionThatEndsWithItIsToldOnce();

private:
    static void addStatuses();
};

void EarlyAnswerTest::addStatuses()
{
    QTest::addColumn<QByteArray>("status");
    for (const char *status : {"200 OK", "400 Bad Request", "401 Unauthorized", "413 Payload Too Large"}) {
        QTest::newRow(status) << QByteArray{status};
    }
}

void EarlyAnswerTest::theAnswerCountsIfTheRestIsTaken()
{
    QFETCH(const QByteArray, status);
    ScriptedAnswer answer = ScriptedAnswer::whole(refusal, status);
    answer.end = ScriptedAnswer::End::stayOpen;
    ScriptedHttpServer server{faultOnce(answer)};
    server.answerAfterBytes(1);
    survive(server, configFor(server), Outcome::told(u"[TooLarge] m"_s), 30s, longPrompt());
}

void EarlyAnswerTest::aConnectionThatEndsWithItIsToldOnce_data()
{
    QTest::addColumn<ScriptedAnswer::End>("end");
    QTest::addColumn<qsizetype>("bytes");
    for (const qsizetype bytes : {1, 100'000, 10'000'000}) {
        QTest::addRow("closed after %d", static_cast<int>(bytes)) << ScriptedAnswer::End::close << bytes;
        QTest::addRow("torn down after %d", static_cast<int>(bytes)) << ScriptedAnswer::End::reset << bytes;
    }
}

void EarlyAnswerTest::aConnectionThatEndsWithItIsToldOnce()
{
    QFETCH(const ScriptedAnswer::End, end);
    QFETCH(const qsizetype, bytes);
    ScriptedAnswer answer = ScriptedAnswer::whole(refusal, "413 Payload Too Large");
    answer.end = end;
    ScriptedHttpServer server{faultOnce(answer)};
    server.answerAfterBytes(bytes);
    Results results;
    ImageGeneratorService service;
    service.generateImage(longPrompt(), 2848, 1600, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 1);
    // A connection that is torn down takes along what it has not brought yet.
    const QStringList possible{u"[TooLarge] m"_s, u"连接已关闭"_s};
    QVERIFY2(possible.contains(results.text()), qPrintable(results.text()));
    QCOMPARE(server.headCount(), 1);

    service.generateImage(u"good"_s, 2848, 1600, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 2);
    QCOMPARE(server.headCount(), 2);
}

QTEST_GUILESS_MAIN(EarlyAnswerTest)
#include "EarlyAnswerTest.moc"
