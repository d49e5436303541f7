#pragma once

#include <QObject>

#include <atomic>

namespace quilmora
{

/// Tells work on other threads that it is no longer wanted. All functions may be called from any thread.
class StopSignal final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StopSignal)

public:
    using QObject::QObject;
    ~StopSignal() override = default;

    void stop()
    {
        stoppedAlready = true;
        Q_EMIT stopped();
    }

    bool isStopped() const { return stoppedAlready; }

Q_SIGNALS:
    void stopped();

private:
    std::atomic_bool stoppedAlready = false;
};

} // namespace quilmora
