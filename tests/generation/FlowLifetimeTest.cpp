#include "generation/CoverGenerationFlow.h"
#include "generation/CoverInputs.h"
#include "generation/CoverPrompt.h"
#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/TemporaryHome.h"

#include <QPointer>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

CoverInputs sampleInputs()
{
    CoverInputs inputs{};
    inputs.selectedSize = CoverSize::presets().constLast();
    inputs.titleText = u"标题"_s;
    inputs.selectedEmotion = Emotion::presets().constFirst();
    return inputs;
}

/// A flow's surroundings, and where and when it was destroyed.
struct Surroundings {
    explicit Surroundings(const ScriptedHttpServer &server)
    {
        database.saveConfig(server.url().toString(), u"key"_s, u"model-1"_s);
    }

    std::shared_ptr<CoverGenerationFlow> startedFlow()
    {
        auto flow = CoverGenerationFlow::create(database, storage, generator);
        QObject::connect(flow.get(), &QObject::destroyed, flow.get(),
                         [this] { destroyedOn.append(QThread::currentThread()); });
        flow->startGeneration(sampleInputs());
        return flow;
    }

    TemporaryHome home;
    const QString covers = home.path(u"Pictures/Quilmora/coverimg"_s);
    DatabaseManager database{home.path(u"data"_s), covers};
    ImageStorageService storage{covers};
    ImageGeneratorService generator;
    QList<QThread *> destroyedOn;
};

} // namespace

/// What becomes of a generation whose screen has been left.
class FlowLifetimeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFlowLetGoStoresAndRecordsItsCover();
    void aFlowLetGoFailsQuietly();
    void aFlowThatIsKeptOutlivesItsRequest();
    void stoppingTheServiceLetsGoOfFlows();
};

void FlowLifetimeTest::aFlowLetGoStoresAndRecordsItsCover()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    server.holdAnswersUntil(2);
    Surroundings surroundings{server};
    QPointer<CoverGenerationFlow> flow = surroundings.startedFlow().get();
    QVERIFY(flow);
    QTRY_COMPARE(server.requestCount(), 1);
    QVERIFY(flow);
    const QPointer<CoverGenerationFlow> second = surroundings.startedFlow().get();
    QTRY_COMPARE(surroundings.destroyedOn.size(), 2);
    QVERIFY(!flow);
    QVERIFY(!second);
    QCOMPARE(surroundings.destroyedOn, QList<QThread *>(2, QThread::currentThread()));

    const QList<HistoryRecord> rows = surroundings.database.fetchAllHistory();
    QCOMPARE(rows.size(), 2);
    for (const HistoryRecord &row : rows) {
        QCOMPARE(row.prompt, composePrompt(sampleInputs()));
        QCOMPARE(row.image().size(), QSize(32, 24));
    }
}

void FlowLifetimeTest::aFlowLetGoFailsQuietly()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole("Bad Gateway", "502 Bad Gateway");
    }};
    Surroundings surroundings{server};
    surroundings.startedFlow().reset();
    QCOMPARE(surroundings.destroyedOn.size(), 0);
    QTRY_COMPARE(surroundings.destroyedOn.size(), 1);
    QCOMPARE(surroundings.destroyedOn.first(), QThread::currentThread());
    QCOMPARE(surroundings.database.fetchAllHistory().size(), 0);
}

void FlowLifetimeTest::aFlowThatIsKeptOutlivesItsRequest()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::whole(pictureAnswer());
    }};
    Surroundings surroundings{server};
    auto flow = surroundings.startedFlow();
    QTRY_VERIFY(std::holds_alternative<generationState::Success>(flow->generationState()));
    QTRY_COMPARE(flow.use_count(), 1);
    QCOMPARE(surroundings.destroyedOn.size(), 0);
    flow.reset();
    QCOMPARE(surroundings.destroyedOn.size(), 1);
}

void FlowLifetimeTest::stoppingTheServiceLetsGoOfFlows()
{
    ScriptedHttpServer server{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    Surroundings surroundings{server};
    surroundings.startedFlow().reset();
    QTRY_COMPARE(server.requestCount(), 1);
    QCOMPARE(surroundings.destroyedOn.size(), 0);
    surroundings.generator.stop();
    QCOMPARE(surroundings.destroyedOn, QList<QThread *>{QThread::currentThread()});
    QCOMPARE(surroundings.database.fetchAllHistory().size(), 0);
}

QTEST_GUILESS_MAIN(FlowLifetimeTest)
#include "FlowLifetimeTest.moc"
