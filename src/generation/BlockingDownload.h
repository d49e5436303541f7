#pragma once

#include <QByteArray>
#include <QObject>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <optional>

namespace quilmora {

/// Cancels work on other threads. All functions may be called from any thread.
class CancellationToken final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void cancel()
    {
        m_isCancelled = true;
        Q_EMIT cancelled();
    }

    bool isCancelled() const { return m_isCancelled; }

Q_SIGNALS:
    void cancelled();

private:
    std::atomic_bool m_isCancelled = false;
};

/// Reads the whole resource at `url`, blocking the calling thread, which must not be the main one. Only web
/// addresses and data URLs are read, never local files. Nothing on any failure, beyond the size limit of
/// responses, when no byte arrives for `idleLimit`, and once `cancellationToken` is cancelled.
std::optional<QByteArray> downloadBlocking(const QUrl &url, std::chrono::milliseconds idleLimit,
                                           const CancellationToken &cancellationToken);

} // namespace quilmora
