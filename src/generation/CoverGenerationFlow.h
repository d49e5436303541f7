#pragma once

#include "generation/GenerationResult.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <memory>
#include <variant>

namespace quilmora {

class DatabaseManager;
class ImageGeneratorService;
class ImageStorageService;
struct CoverInputs;

/// The state of a generation.
namespace generationState {

struct Idle {
};

struct Generating {
};

struct Success {
    QImage image;
};

struct Failure {
    QString message; ///< Shown to the user as it is.
};

} // namespace generationState

using CoverGenerationState = std::variant<generationState::Idle, generationState::Generating,
                                          generationState::Success, generationState::Failure>;

/// Generates a cover, stores it and adds it to the history. A running request keeps its flow alive, so the
/// cover is stored even when the screen is destroyed. The services must outlive it. Main thread only.
class CoverGenerationFlow final : public QObject, public std::enable_shared_from_this<CoverGenerationFlow>
{
    Q_OBJECT

public:
    static std::shared_ptr<CoverGenerationFlow>
    create(DatabaseManager &database, ImageStorageService &storage, ImageGeneratorService &generator);

    const CoverGenerationState &generationState() const { return m_state; }

    /// The last generated picture; null before the first one and after reset().
    const QImage &generatedImage() const { return m_image; }

    /// Starts one generation with the current settings, even while others are running.
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
