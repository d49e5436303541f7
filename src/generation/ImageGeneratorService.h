#pragma once

#include "generation/CancellationToken.h"
#include "generation/GenerationResult.h"
#include "generation/HttpSession.h"
#include "model/VolcengineConfig.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QThread>
#include <QThreadPool>

#include <chrono>

namespace quilmora {

/// The client of the image service. Requests go out from a thread of their own, answers are decoded on
/// further threads, and results come back on the thread of this object, the main thread.
class ImageGeneratorService final : public QObject
{
    Q_OBJECT

public:
    /// After how long a connection on which nothing moves counts as lost.
    struct IdleLimits {
        std::chrono::milliseconds request{std::chrono::seconds{120}};
        std::chrono::milliseconds download{std::chrono::seconds{60}}; ///< Of a picture named by its address.
    };

    explicit ImageGeneratorService(IdleLimits limits);
    ImageGeneratorService() : ImageGeneratorService{IdleLimits{}} {}
    /// Drops what is still under way and calls no completion.
    ~ImageGeneratorService() override;

    /// The one instance of the running application; it stops when the application ends.
    static ImageGeneratorService &shared();

    /// Asks for one cover of `width` x `height` pixels. `completion` is called exactly once: for unusable
    /// settings before this returns, otherwise later on the main thread. The reference pictures are encoded
    /// on the main thread, but not before this has returned.
    void generateImage(const QString &prompt, qint64 width, qint64 height,
                       const QList<QImage> &referenceImages, const VolcengineConfig &config,
                       const GenerationCompletion &completion);

    /// Drops every request under way, sends no further one and ends the threads. Covers that have come by
    /// then are paid for: they go to their completions before this returns. No other completion is called any
    /// more.
    void stop();

private:
    void endThreads();
    void post(quint64 job, const HttpSession::Request &request);
    void decode(quint64 job, const HttpOutcome &outcome);
    void complete(quint64 job, const GenerationResult &result);

    const IdleLimits m_idleLimits;
    /// The jobs under way. Only their numbers go to other threads, so what a completion owns is called and
    /// destroyed on the main thread.
    QHash<quint64, GenerationCompletion> m_completions;
    quint64 m_lastJob = 0;
    CancellationToken m_cancellation;
    QThread m_sessionThread;
    QThreadPool m_decoders;
    HttpSession *m_session; ///< Lives in sessionThread, which deletes it when it ends.
};

} // namespace quilmora
