#pragma once

#include "generation/BlockingDownload.h"
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

/// The client of the image service. Requests are sent from one thread, responses are decoded on others, and
/// completions are called on the thread of this object, the main thread.
class ImageGeneratorService final : public QObject
{
    Q_OBJECT

public:
    /// How long a connection may transfer nothing before it counts as lost.
    struct IdleLimits {
        std::chrono::milliseconds request{std::chrono::seconds{120}};
        std::chrono::milliseconds download{
            std::chrono::seconds{60}}; ///< Of a picture that a response gives by its address.
    };

    explicit ImageGeneratorService(IdleLimits limits);
    ImageGeneratorService() : ImageGeneratorService{IdleLimits{}} {}
    /// Aborts the running requests without calling their completions.
    ~ImageGeneratorService() override;

    /// The one instance of the running application; it stops when the application ends.
    static ImageGeneratorService &shared();

    /// Requests one cover of `width` x `height` pixels. Calls `completion` exactly once: for unusable
    /// settings before it returns, otherwise later. The reference pictures are encoded on the main thread
    /// after this has returned.
    void generateImage(const QString &prompt, qint64 width, qint64 height,
                       const QList<QImage> &referenceImages, const VolcengineConfig &config,
                       const GenerationCompletion &completion);

    /// Aborts all requests, sends no more and ends the threads. Covers that have been received are paid for:
    /// they are passed to their completions before it returns. No other completion is called.
    void stop();

private:
    void endThreads();
    void post(quint64 job, const HttpSession::Request &request);
    void decode(quint64 job, const HttpOutcome &outcome);
    void complete(quint64 job, const GenerationResult &result);

    const IdleLimits m_idleLimits;
    /// By job number. Other threads have only the number, so completions are called and destroyed on the main
    /// thread.
    QHash<quint64, GenerationCompletion> m_completions;
    quint64 m_lastJob = 0;
    CancellationToken m_cancellation;
    QThread m_sessionThread;
    QThreadPool m_decoders;
    HttpSession *m_session; ///< Lives in m_sessionThread, which deletes it.
};

} // namespace quilmora
