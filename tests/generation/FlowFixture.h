#pragma once

#include "generation/CoverGenerationFlow.h"
#include "generation/CoverInputs.h"
#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/TemporaryHome.h"

#include <QMutex>
#include <QObject>

#include <memory>
#include <optional>

namespace quilmora::test
{

using namespace Qt::StringLiterals;

inline CoverInputs sampleInputs()
{
    CoverInputs inputs{};
    inputs.selectedSize = CoverSize::presets().constFirst();
    inputs.titleText = u"三天'学会'做饭"_s;
    inputs.selectedEmotion = Emotion::presets().constFirst();
    return inputs;
}

/// The name of a state, with the message of a failure.
inline QString described(const CoverGenerationState &state)
{
    if (const auto *failure = std::get_if<generationState::Failure>(&state)) {
        return u"failure: "_s + failure->message;
    }
    if (const auto *success = std::get_if<generationState::Success>(&state)) {
        return u"success %1x%2"_s.arg(success->image.width()).arg(success->image.height());
    }
    return std::holds_alternative<generationState::Generating>(state) ? u"generating"_s : u"idle"_s;
}

/// A flow with a real store in a home folder of its own, a real service and a server, all new for each test.
class FlowFixture : public QObject
{
    Q_OBJECT

protected:
    void saveConfig(const QString &url, const QString &key = u"key"_s, const QString &model = u"model-1"_s)
    {
        database->saveConfig(url, key, model);
    }
    void answerWith(const ScriptedHttpServer::Script &wanted)
    {
        const QMutexLocker lock{&mutex};
        script = wanted;
    }
    void start(const CoverInputs &inputs = sampleInputs()) { flow->startGeneration(inputs); }

    std::optional<TemporaryHome> home;
    std::optional<DatabaseManager> database;
    std::optional<ImageStorageService> storage;
    std::optional<ImageGeneratorService> generator;
    std::shared_ptr<CoverGenerationFlow> flow;
    std::unique_ptr<ScriptedHttpServer> server;
    QStringList states; ///< As they were told.

private:
    QMutex mutex;
    ScriptedHttpServer::Script script; ///< Used by the server's thread too.

private Q_SLOTS:
    void init()
    {
        home.emplace();
        const QString covers = home->path(u"Pictures/Quilmora/coverimg"_s);
        database.emplace(home->path(u"data"_s), covers);
        storage.emplace(covers);
        generator.emplace();
        answerWith([](const ReceivedRequest &) { return ScriptedAnswer::whole(pictureAnswer()); });
        server = std::make_unique<ScriptedHttpServer>([this](const ReceivedRequest &request) {
            const QMutexLocker lock{&mutex};
            return script(request);
        });
        saveConfig(server->url().toString());
        flow = CoverGenerationFlow::create(*database, *storage, *generator);
        states.clear();
        connect(flow.get(), &CoverGenerationFlow::generationStateChanged, this,
                [this] { states.append(described(flow->generationState())); });
    }

    void cleanup()
    {
        generator.reset();
        flow.reset();
        server.reset();
        database.reset();
        storage.reset();
        home.reset();
    }
};

} // namespace quilmora::test
