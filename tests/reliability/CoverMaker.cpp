#include "reliability/CoverMaker.h"

#include "generation/CoverInputs.h"
#include "generation/ImageGeneratorService.h"
#include "platform/Console.h"
#include "reliability/PixelDigest.h"
#include "reliability/WorkedSettings.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test
{
namespace
{

/// The smallest picture that the service makes.
constexpr qint64 width = 1280;
constexpr qint64 height = 720;

} // namespace

CoverMaker::CoverMaker(QString theName, int theCount, QString theEndpoint)
    : name{std::move(theName)},
      count{theCount},
      endpoint{std::move(theEndpoint)}
{
}

void CoverMaker::start()
{
    flow = CoverGenerationFlow::create(DatabaseManager::shared(), ImageStorageService::shared(),
                                       ImageGeneratorService::shared());
    connect(flow.get(), &CoverGenerationFlow::generationStateChanged, this, &CoverMaker::tellOutcome);
    console::printLine(u"started"_s);
}

void CoverMaker::makeNext()
{
    if (number == count) {
        Q_EMIT finished();
        return;
    }
    ++number;
    saveSettings();
    CoverInputs inputs{};
    inputs.selectedSize = CoverSize::presets().constFirst();
    inputs.selectedSize.width = width;
    inputs.selectedSize.height = height;
    inputs.titleText = title();
    inputs.selectedEmotion = Emotion::presets().constFirst();
    flow->startGeneration(inputs);
}

void CoverMaker::saveSettings() const
{
    console::printLine(u"saving %1"_s.arg(number));
    const VolcengineConfig settings = workedSettings(endpoint, number);
    DatabaseManager::shared().saveConfig(settings.apiURL, settings.apiKey, settings.modelID);
    console::printLine(u"saved %1"_s.arg(number));
}

void CoverMaker::tellOutcome()
{
    if (const auto *success = std::get_if<generationState::Success>(&flow->generationState())) {
        console::printLine(u"shown "_s + title() + u' ' + pixelDigest(success->image));
    } else if (const auto *failure = std::get_if<generationState::Failure>(&flow->generationState())) {
        console::printLine(u"failed "_s + failure->message);
    } else {
        return;
    }
    QMetaObject::invokeMethod(this, &CoverMaker::makeNext, Qt::QueuedConnection);
}

} // namespace quilmora::test
