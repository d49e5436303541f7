#pragma once

#include "local_service/http/ErrorEnvelope.h"
#include "local_service/http/PictureRequest.h"
#include "model/VolcengineConfig.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace quilmora::localservice {

/// How a local image service is to behave.
struct LocalServiceOptions {
    quint16 port = 0; ///< On 127.0.0.1; 0 takes any free one.
    QString key = QStringLiteral("local-demo-key");
    std::chrono::milliseconds delay{1500}; ///< The least time from a good request to its answer.
    QStringList models{VolcengineConfig::defaultModelID()};
};

/// Turns one generation request into its answer, without knowing how either travels. Thread-safe: every
/// request is handled on the thread that brings it.
class GenerationHandler final
{
public:
    /// What came in with the request.
    struct Incoming {
        QByteArray authorization; ///< The header's value.
        QByteArray contentType;   ///< The header's value.
        QByteArray body;
    };
    /// What goes back, always JSON.
    struct Reply {
        int status;
        QByteArray body;
    };

    /// What has been done so far.
    struct Counts {
        int requests = 0;   ///< Generation requests received, good and bad.
        int answered = 0;   ///< Those that got a picture.
        int underWay = 0;   ///< Those being worked on right now.
        int mostAtOnce = 0; ///< The highest number ever under way together.
    };

    explicit GenerationHandler(LocalServiceOptions options) : m_options{std::move(options)} {}

    /// Checks the request, composes the cover and waits until the delay has passed.
    Reply handle(const Incoming &incoming);
    /// `error` as an answer with a request id of its own.
    Reply refuse(const ErrorEnvelope &error);
    /// From now on waiting requests end at once.
    void shutDown();

    /// Where the addresses in answers point to, without the picture's name. Set before the first request.
    void setPictureAddress(const QString &address) { m_pictureAddress = address; }
    /// The bytes of the picture with this name, empty when there is none (any more).
    QByteArray picture(const QString &name) const;
    Counts counts() const;

private:
    using Clock = std::chrono::steady_clock;

    Reply answer(const PictureRequest &request, Clock::time_point arrival);
    bool waitUntil(Clock::time_point moment);
    QString keep(const QByteArray &picture);

    const LocalServiceOptions m_options;
    QString m_pictureAddress;
    mutable std::mutex m_mutex; ///< Of all that follows.
    std::condition_variable m_wake;
    bool m_shutDown = false;
    quint64 m_nextId = 1;
    Counts m_counts;
    QHash<QString, QByteArray> m_pictures; ///< By name.
    QStringList m_pictureNames;            ///< From the oldest to the newest.
};

} // namespace quilmora::localservice
