#include "generation/CoverGenerationFlow.h"

#include "generation/Client.h"
#include "generation/GenerationRequest.h"
#include "model/CoverInputs.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QMutex>
#include <QPointer>

#include <memory>
#include <optional>

using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

CoverInputs sampleInputs(const QString &title = u"三天'学会'做饭"_s)
{
    CoverInputs inputs{};
    inputs.selectedSize = CoverSize::presets().constFirst();
    inputs.titleText = title;
    inputs.selectedEmotion = Emotion::presets().constFirst();
    return inputs;
}

/// The name of a state, with the message of a failure.
QString described(const CoverGenerationState &state)
{
    if (const auto *failure = std::get_if<generationState::Failure>(&state)) {
        return u"failure: "_s + failure->message;
    }
    if (const auto *success = std::get_if<generationState::Success>(&state)) {
        return u"success %1x%2"_s.arg(success->image.width()).arg(success->image.height());
    }
    return std::holds_alternative<generationState::Generating>(state) ? u"generating"_s : u"idle"_s;
}

ScriptedResponse refusal()
{
    return ScriptedResponse::whole(R"({"error":{"code":"C","message":"m"}})", "400 Bad Request");
}

} // namespace

/// The flow with a real store in a home folder of its own, a real service and a server, all new for each
/// test.
class CoverGenerationFlowTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        const QString covers = m_home->path(u"Pictures/Quilmora/coverimg"_s);
        m_database.emplace(m_home->path(u"data"_s), covers);
        m_storage.emplace(covers);
        m_generator.emplace();
        respondWith([](const ReceivedRequest &) { return pictureResponse(); });
        m_server.emplace([this](const ReceivedRequest &request) { return respond(request); });
        saveConfig(m_server->url().toString());
        m_states.clear();
        m_destroyedOn.clear();
        makeFlow();
    }

    void cleanup()
    {
        m_generator.reset();
        m_flow.reset();
        m_server.reset();
        m_database.reset();
        m_storage.reset();
        m_home.reset();
    }

    void aSuccessIsStoredAndRecordedBeforeItIsReported()
    {
        qsizetype rowsAtSuccess = -1;
        QSize pictureAtSuccess;
        connect(m_flow.get(), &CoverGenerationFlow::generationStateChanged, this, [&] {
            if (std::holds_alternative<generationState::Success>(m_flow->generationState())) {
                rowsAtSuccess = m_database->fetchAllHistory().size();
                pictureAtSuccess = m_flow->generatedImage().size();
            }
        });
        QCOMPARE(described(m_flow->generationState()), u"idle"_s);
        start();
        QCOMPARE(m_states, QStringList{u"generating"_s});
        QTRY_COMPARE(m_states, QStringList({u"generating"_s, u"success 32x24"_s}));
        QCOMPARE(rowsAtSuccess, 1);
        QCOMPARE(pictureAtSuccess, QSize(32, 24));

        const HistoryRecord row = m_database->fetchAllHistory().constFirst();
        QCOMPARE(row.prompt, composePrompt(sampleInputs()));
        QCOMPARE(row.modelID, u"model-1"_s);
        QVERIFY(row.imagePath.startsWith(u"~/Pictures/Quilmora/coverimg/cover_"_s));
        QCOMPARE(row.image(), samplePictures::inSrgb(m_flow->generatedImage()));
        const QJsonDocument sent = QJsonDocument::fromJson(m_server->requests().constFirst().body);
        QCOMPARE(sent[u"prompt"_s].toString(), row.prompt);
        QCOMPARE(sent[u"size"_s].toString(), u"2848x1600"_s);

        m_flow->reset();
        QCOMPARE(m_states.last(), u"idle"_s);
        QVERIFY(m_flow->generatedImage().isNull());
        QCOMPARE(m_database->fetchAllHistory().size(), 1);
    }

    void settingsOfTheStartCount()
    {
        m_server->holdAnswersUntil(2);
        start();
        QTRY_COMPARE(m_server->requestCount(), 1);
        saveConfig(m_server->url().toString(), u"other"_s, u"model-2"_s);
        start();
        QTRY_COMPARE(m_states.size(), 4);
        QCOMPARE(m_server->requests()[0].header("Authorization"), "Bearer key");
        QCOMPARE(m_server->requests()[1].header("Authorization"), "Bearer other");
        QStringList models;
        for (const HistoryRecord &row : m_database->fetchAllHistory()) {
            models.append(row.modelID);
        }
        models.sort();
        QCOMPARE(models, QStringList({u"model-1"_s, u"model-2"_s}));
    }

    void picturesGoFaceFirst_data()
    {
        const DataRows<QImage, QImage, QList<int>> row{"face", "style", "widths"};
        const QImage face = samplePictures::picture({30, 20});
        const QImage style = samplePictures::picture({50, 20});
        row("both", face, style, {30, 50});
        row("face only", face, {}, {30});
        row("style only", {}, style, {50});
        row("none", {}, {}, {});
    }

    void picturesGoFaceFirst()
    {
        QFETCH(const QImage, face);
        QFETCH(const QImage, style);
        QFETCH(const QList<int>, widths);
        CoverInputs inputs = sampleInputs();
        inputs.faceImage = face;
        inputs.styleImage = style;
        start(inputs);
        QTRY_COMPARE(m_states.size(), 2);
        QList<int> sent;
        for (const QImage &picture : picturesIn(m_server->requests().constFirst())) {
            sent.append(picture.width());
        }
        QCOMPARE(sent, widths);
    }

    void aKeyOfOneBlankPassesAndNoneDoesNot()
    {
        saveConfig(m_server->url().toString(), u" "_s);
        start();
        QTRY_COMPARE(m_states, QStringList({u"generating"_s, u"success 32x24"_s}));
        QCOMPARE(m_server->requests().constFirst().header("Authorization"), "Bearer");

        saveConfig({}, {}, {});
        start();
        QCOMPARE(m_states.size(), 3);
        QCOMPARE(m_states.last(), u"failure: 请先在「功能设置」中配置火山引擎的 API Key"_s);
        QCOMPARE(m_flow->generatedImage().size(), QSize(32, 24));
        QCOMPARE(m_database->fetchAllHistory().size(), 1);
        QCOMPARE(m_server->connectionCount(), 1);
    }

    void earlyFailuresComeBeforeTheStartReturns()
    {
        saveConfig(u"http://bad address"_s);
        start();
        QCOMPARE(m_states,
                 QStringList({u"generating"_s, u"failure: API URL 无效，请在「功能设置」中配置"_s}));
        saveConfig(m_server->url().toString(), u"a\nb"_s);
        start();
        QCOMPARE(m_states.mid(2),
                 QStringList({u"generating"_s, u"failure: API Key 无效，请在「功能设置」中配置"_s}));
        QCOMPARE(m_server->connectionCount(), 0);
    }

    void aFailureKeepsTheFormerPicture()
    {
        start();
        QTRY_COMPARE(m_states.size(), 2);
        respondWith([](const ReceivedRequest &) { return refusal(); });
        start();
        QCOMPARE(m_flow->generatedImage().size(), QSize(32, 24));
        QTRY_COMPARE(m_states.mid(2), QStringList({u"generating"_s, u"failure: [C] m"_s}));
        QCOMPARE(m_flow->generatedImage().size(), QSize(32, 24));
        QCOMPARE(m_database->fetchAllHistory().size(), 1);
    }

    void aCoverThatCannotBeStoredIsStillASuccess()
    {
        QVERIFY(QDir{m_home->path(u"Pictures"_s)}.removeRecursively());
        start();
        QTRY_COMPARE(m_states, QStringList({u"generating"_s, u"success 32x24"_s}));
        QCOMPARE(m_flow->generatedImage().size(), QSize(32, 24));
        QCOMPARE(m_database->fetchAllHistory().size(), 0);
    }

    void twoAtOnceWriteTheStateAsTheirResponsesArrive()
    {
        respondWith([](const ReceivedRequest &request) {
            return request.body.contains("slow") ? pictureResponse().after(300ms) : refusal();
        });
        m_server->holdAnswersUntil(2);
        start(sampleInputs(u"slow"_s));
        start();
        QTRY_COMPARE(m_states, QStringList({u"generating"_s, u"generating"_s, u"failure: [C] m"_s,
                                            u"success 32x24"_s}));
        QCOMPARE(m_database->fetchAllHistory().size(), 1);
    }

    // What becomes of a generation whose screen has been left.

    void aReleasedFlowStoresAndRecordsItsCover()
    {
        m_server->holdAnswersUntil(2);
        start();
        const QPointer<CoverGenerationFlow> flow = m_flow.get();
        m_flow.reset();
        QTRY_COMPARE(m_server->requestCount(), 1);
        QVERIFY(flow);
        makeFlow();
        start();
        const QPointer<CoverGenerationFlow> second = m_flow.get();
        m_flow.reset();
        QTRY_COMPARE(m_destroyedOn, QList<QThread *>(2, QThread::currentThread()));
        QVERIFY(!flow);
        QVERIFY(!second);

        const QList<HistoryRecord> rows = m_database->fetchAllHistory();
        QCOMPARE(rows.size(), 2);
        for (const HistoryRecord &row : rows) {
            QCOMPARE(row.prompt, composePrompt(sampleInputs()));
            QCOMPARE(row.image().size(), QSize(32, 24));
        }
    }

    void aReleasedFlowFailsQuietly()
    {
        respondWith([](const ReceivedRequest &) { return refusal(); });
        start();
        m_flow.reset();
        QCOMPARE(m_destroyedOn.size(), 0);
        QTRY_COMPARE(m_destroyedOn, QList<QThread *>{QThread::currentThread()});
        QCOMPARE(m_database->fetchAllHistory().size(), 0);
    }

    void aFlowThatIsKeptOutlivesItsRequest()
    {
        start();
        QTRY_VERIFY(std::holds_alternative<generationState::Success>(m_flow->generationState()));
        QTRY_COMPARE(m_flow.use_count(), 1);
        QCOMPARE(m_destroyedOn.size(), 0);
        m_flow.reset();
        QCOMPARE(m_destroyedOn.size(), 1);
    }

    void stoppingTheServiceReleasesFlows()
    {
        respondWith([](const ReceivedRequest &) { return ScriptedResponse::silence(); });
        start();
        m_flow.reset();
        QTRY_COMPARE(m_server->requestCount(), 1);
        QCOMPARE(m_destroyedOn.size(), 0);
        m_generator->stop();
        QCOMPARE(m_destroyedOn, QList<QThread *>{QThread::currentThread()});
        QCOMPARE(m_database->fetchAllHistory().size(), 0);
    }

private:
    void saveConfig(const QString &url, const QString &key = u"key"_s, const QString &model = u"model-1"_s)
    {
        m_database->saveConfig(url, key, model);
    }

    void respondWith(const ScriptedHttpServer::Script &wanted)
    {
        const QMutexLocker lock{&m_mutex};
        m_script = wanted;
    }

    /// Called on the server's thread.
    ScriptedResponse respond(const ReceivedRequest &request)
    {
        const QMutexLocker lock{&m_mutex};
        return m_script(request);
    }

    void makeFlow()
    {
        m_flow = CoverGenerationFlow::create(*m_database, *m_storage, *m_generator);
        connect(m_flow.get(), &CoverGenerationFlow::generationStateChanged, this,
                [this, flow = m_flow.get()] { m_states.append(described(flow->generationState())); });
        connect(
            m_flow.get(), &QObject::destroyed, this,
            [this] { m_destroyedOn.append(QThread::currentThread()); }, Qt::DirectConnection);
    }

    void start(const CoverInputs &inputs = sampleInputs()) { m_flow->startGeneration(inputs); }

    std::optional<TemporaryHome> m_home;
    std::optional<DatabaseManager> m_database;
    std::optional<ImageStorageService> m_storage;
    std::optional<ImageGeneratorService> m_generator;
    std::shared_ptr<CoverGenerationFlow> m_flow;
    std::optional<ScriptedHttpServer> m_server;
    QStringList m_states; ///< In the order in which they came.
    QList<QThread *> m_destroyedOn;
    QMutex m_mutex;
    ScriptedHttpServer::Script m_script; ///< Used by the server's thread too.
};

QUILMORA_TEST(CoverGenerationFlowTest, runCoreTest)
#include "CoverGenerationFlowTest.moc"
