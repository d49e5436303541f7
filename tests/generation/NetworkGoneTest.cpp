#include "generation/FaultRun.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>

#include <optional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

ScriptedAnswer goodAnswer(const ReceivedRequest & /*request*/)
{
    return ScriptedAnswer::whole(pictureAnswer());
}

} // namespace

/// A network that goes away and comes back, under one service that lives on.
class NetworkGoneTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void aServerThatIsGoneAndBack();
    void aServerThatGoesDuringARequest();
    void aNameThatIsUnknownAndThenRight();
    void manyFaultsInARowLeaveNothingBehind();

private:
    static void generate(ImageGeneratorService &service, const VolcengineConfig &config, Results &results)
    {
        service.generateImage(u"p"_s, 2848, 1600, {}, config, results.collect());
    }
};

void NetworkGoneTest::aServerThatIsGoneAndBack()
{
    auto server = std::make_unique<ScriptedHttpServer>(goodAnswer);
    const VolcengineConfig config = configFor(*server);
    const auto port = static_cast<quint16>(server->url().port());
    Results results;
    ImageGeneratorService service;
    generate(service, config, results);
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY(results.isPicture(0));

    server.reset();
    for (qsizetype count = 2; count <= 4; ++count) {
        generate(service, config, results);
        QTRY_COMPARE(results.all.size(), count);
        QCOMPARE(results.text(count - 1), u"连接被拒绝"_s);
    }

    server = std::make_unique<ScriptedHttpServer>(goodAnswer, port);
    generate(service, config, results);
    QTRY_COMPARE(results.all.size(), 5);
    QVERIFY2(results.isPicture(4), qPrintable(results.text(4)));
    QCOMPARE(server->headCount(), 1);
}

void NetworkGoneTest::aServerThatGoesDuringARequest()
{
    auto server =
        std::make_unique<ScriptedHttpServer>([](const auto &) { return ScriptedAnswer::silence(); });
    const VolcengineConfig config = configFor(*server);
    const auto port = static_cast<quint16>(server->url().port());
    Results results;
    ImageGeneratorService service;
    generate(service, config, results);
    QTRY_COMPARE(server->requestCount(), 1);
    server.reset();
    QTRY_COMPARE(results.all.size(), 1);
    QCOMPARE(results.text(), u"连接已关闭"_s);

    server = std::make_unique<ScriptedHttpServer>(goodAnswer, port);
    generate(service, config, results);
    QTRY_COMPARE(results.all.size(), 2);
    QVERIFY2(results.isPicture(1), qPrintable(results.text(1)));
    // The lost one has not come along.
    QCOMPARE(server->headCount(), 1);
}

void NetworkGoneTest::aNameThatIsUnknownAndThenRight()
{
    const ScriptedHttpServer server{goodAnswer};
    Results results;
    ImageGeneratorService service;
    VolcengineConfig wrong = configFor(server);
    wrong.apiURL.replace(u"127.0.0.1"_s, u"quilmora.invalid"_s);
    generate(service, wrong, results);
    QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 1, 60'000);
    QCOMPARE(results.text(), u"主机 quilmora.invalid 没有找到"_s);
    generate(service, configFor(server), results);
    QTRY_COMPARE(results.all.size(), 2);
    QVERIFY2(results.isPicture(1), qPrintable(results.text(1)));
    QCOMPARE(server.headCount(), 1);
}

void NetworkGoneTest::manyFaultsInARowLeaveNothingBehind()
{
    constexpr int rounds = 25;
    const ScriptedHttpServer server{[count = std::make_shared<std::atomic_int>(0)](const auto &) {
        switch ((*count)++ % 4) {
        case 0:
            return ScriptedAnswer::reset();
        case 1:
            return ScriptedAnswer::cut("{", 100);
        case 2:
            return ScriptedAnswer::whole("Bad Gateway", "502 Bad Gateway");
        default:
            return ScriptedAnswer::whole(pictureAnswer());
        }
    }};
    Results results;
    ImageGeneratorService service;
    for (int count = 1; count <= rounds * 4; ++count) {
        generate(service, configFor(server), results);
        QTRY_COMPARE(results.all.size(), count);
        QCOMPARE(results.isPicture(count - 1), count % 4 == 0);
        QCOMPARE(server.headCount(), count);
    }
}

QTEST_GUILESS_MAIN(NetworkGoneTest)
#include "NetworkGoneTest.moc"
