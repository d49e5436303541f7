#include "generation/CoverGenerationFlow.h"

#include "generation/GenerationRequest.h"
#include "generation/ImageGeneratorService.h"
#include "model/CoverInputs.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

QList<QImage> referenceImages(const CoverInputs &inputs)
{
    QList<QImage> images{inputs.faceImage, inputs.styleImage};
    images.removeIf([](const QImage &image) { return image.isNull(); });
    return images;
}

} // namespace

std::shared_ptr<CoverGenerationFlow> CoverGenerationFlow::create(DatabaseManager &database,
                                                                 ImageStorageService &storage,
                                                                 ImageGeneratorService &generator)
{
    return std::shared_ptr<CoverGenerationFlow>{new CoverGenerationFlow{database, storage, generator}};
}

CoverGenerationFlow::CoverGenerationFlow(DatabaseManager &database, ImageStorageService &storage,
                                         ImageGeneratorService &generator)
    : m_database{database},
      m_storage{storage},
      m_generator{generator}
{
}

void CoverGenerationFlow::startGeneration(const CoverInputs &inputs)
{
    const VolcengineConfig config = m_database.getConfig();
    if (config.apiKey.isEmpty()) {
        setState(generationState::Failure{u"请先在「功能设置」中配置火山引擎的 API Key"_s});
        return;
    }
    const QString prompt = composePrompt(inputs);
    setState(generationState::Generating{});
    m_generator.generateImage(prompt, inputs.selectedSize.width, inputs.selectedSize.height,
                              referenceImages(inputs), config,
                              [self = shared_from_this(), prompt, model = config.modelID](
                                  const GenerationResult &result) { self->finish(result, prompt, model); });
}

void CoverGenerationFlow::finish(const GenerationResult &result, const QString &prompt,
                                 const QString &modelID)
{
    const auto *cover = std::get_if<QImage>(&result);
    if (cover == nullptr) {
        setState(generationState::Failure{localizedDescription(result)});
        return;
    }
    m_image = *cover;
    // The file comes first: a row never names a file that was not written.
    if (const auto path = m_storage.saveImage(*cover)) {
        m_database.insertHistory(prompt, *path, modelID);
    }
    setState(generationState::Success{*cover});
}

void CoverGenerationFlow::reset()
{
    m_image = {};
    setState(generationState::Idle{});
}

void CoverGenerationFlow::setState(const CoverGenerationState &newState)
{
    m_state = newState;
    Q_EMIT generationStateChanged();
}

} // namespace quilmora
