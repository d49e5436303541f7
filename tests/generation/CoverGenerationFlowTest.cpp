#include "generation/CoverPrompt.h"
#include "generation/FlowFixture.h"
#include "support/SamplePictures.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonValue>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

ScriptedAnswer refusal()
{
    return ScriptedAnswer::whole(R"({"error":{"code":"C","message":"m"}})", "400 Bad Request");
}

} // namespace

/// The flow with a real store in a home folder of its own and a real service.
class CoverGenerationFlowTest final : public FlowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aSuccessIsStoredAndRecordedBeforeItIsTold();
    void withoutAKeyNothingIsSent();
    void earlyFailuresComeBeforeTheStartReturns();
    void aFailureKeepsTheFormerPicture();
    void aConnectionThatFailsShowsItsText();
    void aCoverThatCannotBeStoredIsStillASuccess();
    void twoAtOnceWriteTheStateAsTheirAnswersArrive();
    void resetLeadsBackToIdle();
};

void CoverGenerationFlowTest::aSuccessIsStoredAndRecordedBeforeItIsTold()
{
    qsizetype rowsWhenTold = -1;
    QSize pictureWhenTold;
    connect(flow.get(), &CoverGenerationFlow::generationStateChanged, this, [&] {
        if (std::holds_alternative<generationState::Success>(flow->generationState())) {
            rowsWhenTold = database->fetchAllHistory().size();
            pictureWhenTold = flow->generatedImage().size();
        }
    });
    QCOMPARE(described(flow->generationState()), u"idle"_s);
    start();
    QCOMPARE(states, QStringList{u"generating"_s});
    QTRY_COMPARE(states.size(), 2);
    QCOMPARE(states.last(), u"success 32x24"_s);
    QCOMPARE(rowsWhenTold, 1);
    QCOMPARE(pictureWhenTold, QSize(32, 24));

    const HistoryRecord row = database->fetchAllHistory().constFirst();
    QCOMPARE(row.prompt, composePrompt(sampleInputs()));
    QCOMPARE(row.modelID, u"model-1"_s);
    QVERIFY(row.imagePath.startsWith(u"~/Pictures/Quilmora/coverimg/cover_"_s));
    QCOMPARE(row.image(), samplePictures::inSrgb(flow->generatedImage()));
    const QJsonDocument sent = QJsonDocument::fromJson(server->requests().constFirst().body);
    QCOMPARE(sent[u"prompt"_s].toString(), row.prompt);
    QCOMPARE(sent[u"size"_s].toString(), u"2848x1600"_s);
}

void CoverGenerationFlowTest::withoutAKeyNothingIsSent()
{
    start();
    QTRY_COMPARE(states.size(), 2);
    saveConfig({}, {}, {});
    start();
    QCOMPARE(states.size(), 3);
    QCOMPARE(states.last(), u"failure: 请先在「功能设置」中配置火山引擎的 API Key"_s);
    QCOMPARE(flow->generatedImage().size(), QSize(32, 24));
    QCOMPARE(database->fetchAllHistory().size(), 1);
    QCOMPARE(server->connectionCount(), 1);
}

void CoverGenerationFlowTest::earlyFailuresComeBeforeTheStartReturns()
{
    saveConfig(u"http://bad address"_s);
    start();
    QCOMPARE(states, QStringList({u"generating"_s, u"failure: API URL 无效，请在「功能设置」中配置"_s}));
    saveConfig(server->url().toString(), u"a\nb"_s);
    start();
    QCOMPARE(states.mid(2),
             QStringList({u"generating"_s, u"failure: API Key 无效，请在「功能设置」中配置"_s}));
    QCOMPARE(server->connectionCount(), 0);
}

void CoverGenerationFlowTest::aFailureKeepsTheFormerPicture()
{
    start();
    QTRY_COMPARE(states.size(), 2);
    answerWith([](const ReceivedRequest &) { return refusal(); });
    start();
    QCOMPARE(flow->generatedImage().size(), QSize(32, 24));
    QTRY_COMPARE(states.mid(2), QStringList({u"generating"_s, u"failure: [C] m"_s}));
    QCOMPARE(flow->generatedImage().size(), QSize(32, 24));
    QCOMPARE(database->fetchAllHistory().size(), 1);
}

void CoverGenerationFlowTest::aConnectionThatFailsShowsItsText()
{
    server.reset();
    start();
    QTRY_COMPARE(states.size(), 2);
    QCOMPARE(states.last(), u"failure: Connection refused"_s);
    QVERIFY(flow->generatedImage().isNull());
    QCOMPARE(database->fetchAllHistory().size(), 0);
}

void CoverGenerationFlowTest::aCoverThatCannotBeStoredIsStillASuccess()
{
    QVERIFY(QDir{home->path(u"Pictures"_s)}.removeRecursively());
    start();
    QTRY_COMPARE(states, QStringList({u"generating"_s, u"success 32x24"_s}));
    QCOMPARE(flow->generatedImage().size(), QSize(32, 24));
    QCOMPARE(database->fetchAllHistory().size(), 0);
}

void CoverGenerationFlowTest::twoAtOnceWriteTheStateAsTheirAnswersArrive()
{
    answerWith([](const ReceivedRequest &request) {
        return request.body.contains("slow")
                   ? ScriptedAnswer::whole(pictureAnswer()).after(std::chrono::milliseconds{300})
                   : refusal();
    });
    server->holdAnswersUntil(2);
    CoverInputs slow = sampleInputs();
    slow.titleText = u"slow"_s;
    start(slow);
    start();
    QTRY_COMPARE(states,
                 QStringList({u"generating"_s, u"generating"_s, u"failure: [C] m"_s, u"success 32x24"_s}));
    QCOMPARE(database->fetchAllHistory().size(), 1);
}

void CoverGenerationFlowTest::resetLeadsBackToIdle()
{
    start();
    QTRY_COMPARE(states.size(), 2);
    flow->reset();
    QCOMPARE(states.last(), u"idle"_s);
    QVERIFY(flow->generatedImage().isNull());
    QCOMPARE(database->fetchAllHistory().size(), 1);
}

QTEST_GUILESS_MAIN(CoverGenerationFlowTest)
#include "CoverGenerationFlowTest.moc"
