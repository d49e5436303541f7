#pragma once

#include "local_service/http/ErrorEnvelope.h"
#include "local_service/http/LocalServiceOptions.h"
#include "local_service/http/PictureRequest.h"
#include "local_service/http/PictureShelf.h"
#include "local_service/http/RequestValidator.h"
#include "local_service/http/ServiceCounters.h"

#include <QByteArray>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace quilmora
{

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

    explicit GenerationHandler(const LocalServiceOptions &options);

    /// Checks the request, composes the cover and waits until the delay has passed.
    Reply handle(const Incoming &incoming);
    /// `error` as an answer with a request id of its own.
    Reply refuse(const ErrorEnvelope &error);
    /// From now on waiting requests end at once.
    void shutDown();

    /// Where the addresses in answers point to, without the picture's name. Set before the first request.
    void setPictureAddress(const QString &address) { m_pictureAddress = address; }

    const ServiceCounters &counters() const { return m_counters; }
    const PictureShelf &pictures() const { return m_pictures; }

private:
    using Clock = std::chrono::steady_clock;

    Reply answer(const PictureRequest &request, Clock::time_point arrival);
    bool waitUntil(Clock::time_point moment);

    const LocalServiceOptions m_options;
    const RequestValidator m_validator;
    QString m_pictureAddress;
    PictureShelf m_pictures;
    ServiceCounters m_counters;
    std::atomic<quint64> m_nextId = 1;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_shutDown = false;
};

} // namespace quilmora
