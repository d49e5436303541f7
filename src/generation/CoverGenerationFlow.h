#pragma once

#include "generation/GenerationResult.h"
#include "model/CoverGenerationState.h"

#include <QImage>
#include <QObject>

#include <memory>

namespace quilmora {

class DatabaseManager;
class ImageGeneratorService;
class ImageStorageService;
struct CoverInputs;

/// From the user's choices to a stored and recorded cover. It holds what a screen shows of that, and knows no
/// screen: a request under way keeps its flow alive, so the cover is stored and recorded even when whoever
/// started it has gone. The services must outlive it. Main thread only.
class CoverGenerationFlow final : public QObject, public std::enable_shared_from_this<CoverGenerationFlow>
{
    Q_OBJECT

public:
    static std::shared_ptr<CoverGenerationFlow>
    create(DatabaseManager &database, ImageStorageService &storage, ImageGeneratorService &generator);

    const CoverGenerationState &generationState() const { return m_state; }

    /// The last picture made; null before the first one and after a return to the form.
    const QImage &generatedImage() const { return m_image; }

    /// Starts one generation with the settings as they are now. Does not mind others under way.
    void startGeneration(const CoverInputs &inputs);

    /// Back to idle, without a picture.
    void reset();

Q_SIGNALS:
    void generationStateChanged();

private:
    CoverGenerationFlow(DatabaseManager &database, ImageStorageService &storage,
                        ImageGeneratorService &generator);

    void finish(const GenerationResult &result, const QString &prompt, const QString &modelID);
    void setState(const CoverGenerationState &newState);

    DatabaseManager &m_database;
    ImageStorageService &m_storage;
    ImageGeneratorService &m_generator;
    CoverGenerationState m_state;
    QImage m_image;
};

} // namespace quilmora
