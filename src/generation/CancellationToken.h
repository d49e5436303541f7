#pragma once

#include <QObject>

#include <atomic>

namespace quilmora {

/// Tells work on other threads that it is no longer wanted. All functions may be called from any thread.
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

} // namespace quilmora
