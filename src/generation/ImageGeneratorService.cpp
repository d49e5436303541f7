#include "generation/ImageGeneratorService.h"

#include "generation/BlockingDownload.h"
#include "generation/GenerationRequest.h"
#include "generation/ResponseParser.h"

#include <QCoreApplication>
#include <QUrl>

#include <optional>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// More than a user starts at once, so that a slow download of a picture does not delay other responses.
constexpr int maximumDecoders = 32;

/// A line break or NUL in the key would end the header line and start another header.
bool fitsHeaderLine(const QString &key)
{
    return !key.contains(u'\r') && !key.contains(u'\n') && !key.contains(QChar::Null);
}

std::optional<GenError> settingsError(const VolcengineConfig &config)
{
    if (config.apiURL.isEmpty() || !QUrl{config.apiURL, QUrl::StrictMode}.isValid()) {
        return GenError{GenError::Case::invalidURL};
    }
    if (config.apiKey.isEmpty() || !fitsHeaderLine(config.apiKey)) {
        return GenError{GenError::Case::invalidAPIKey};
    }
    if (config.modelID.isEmpty()) {
        return GenError{GenError::Case::invalidModelID};
    }
    return std::nullopt;
}

} // namespace

ImageGeneratorService::ImageGeneratorService(IdleLimits limits)
    : m_idleLimits{limits},
      m_session{new HttpSession{limits.request}}
{
    m_decoders.setMaxThreadCount(maximumDecoders);
    m_session->moveToThread(&m_sessionThread);
    connect(&m_sessionThread, &QThread::finished, m_session, &QObject::deleteLater);
    m_sessionThread.setObjectName(u"http"_s);
    m_sessionThread.start();
}

ImageGeneratorService::~ImageGeneratorService() { endThreads(); }

ImageGeneratorService &ImageGeneratorService::shared()
{
    static ImageGeneratorService instance;
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, &instance,
            &ImageGeneratorService::stop, Qt::UniqueConnection);
    return instance;
}

void ImageGeneratorService::stop()
{
    m_cancellation.cancel();
    if (m_sessionThread.isRunning()) {
        // Queued, so that responses that have arrived are passed to the decoders first.
        QMetaObject::invokeMethod(m_session, [this] { m_sessionThread.quit(); });
        m_sessionThread.wait();
    }
    endThreads();
    // Delivers the queued results.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_completions.clear();
}

void ImageGeneratorService::endThreads()
{
    m_cancellation.cancel();
    m_sessionThread.quit();
    m_sessionThread.wait();
    m_decoders.waitForDone();
}

void ImageGeneratorService::generateImage(const QString &prompt, qint64 width, qint64 height,
                                          const QList<QImage> &referenceImages,
                                          const VolcengineConfig &config,
                                          const GenerationCompletion &completion)
{
    if (const auto error = settingsError(config)) {
        completion(*error);
        return;
    }
    if (m_cancellation.isCancelled()) {
        return;
    }
    const quint64 job = ++m_lastJob;
    m_completions.insert(job, completion);
    const auto encodeAndPost = [=, this] {
        if (m_cancellation.isCancelled()) {
            return;
        }
        // HTTP strips blanks at the end of a header value, so those of the key are not sent.
        const QByteArray body = encodeRequestBody({prompt, width, height, referenceImages, config.modelID});
        post(job, {QUrl{config.apiURL, QUrl::StrictMode}, "Bearer " + config.apiKey.toUtf8(), body});
    };
    // Encoding large photos takes time; the caller can show the progress first.
    QMetaObject::invokeMethod(this, encodeAndPost, Qt::QueuedConnection);
}

void ImageGeneratorService::post(quint64 job, const HttpSession::Request &request)
{
    QMetaObject::invokeMethod(m_session, [this, job, request] {
        if (m_cancellation.isCancelled()) {
            return;
        }
        m_session->post(request, [this, job](const HttpOutcome &outcome) {
            // On another thread: downloading a picture would block the other requests.
            m_decoders.start([this, job, outcome] { decode(job, outcome); });
        });
    });
}

void ImageGeneratorService::decode(quint64 job, const HttpOutcome &outcome)
{
    GenerationResult result = GenError{GenError::Case::noData};
    if (const auto *error = std::get_if<TransportError>(&outcome)) {
        result = *error;
    } else if (const auto *body = std::get_if<QByteArray>(&outcome)) {
        result = parseResponse(*body, [this](const QUrl &url) {
            return downloadBlocking(url, m_idleLimits.download, m_cancellation);
        });
    }
    QMetaObject::invokeMethod(
        this, [this, job, result] { complete(job, result); }, Qt::QueuedConnection);
}

void ImageGeneratorService::complete(quint64 job, const GenerationResult &result)
{
    // After stop() no error is reported.
    const bool isWanted = !m_cancellation.isCancelled() || std::holds_alternative<QImage>(result);
    if (const GenerationCompletion completion = m_completions.take(job); completion && isWanted) {
        completion(result);
    }
}

} // namespace quilmora
