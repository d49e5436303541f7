#pragma once

#include <QString>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace quilmora::bench {

/// Listens on loopback for one connection, on a thread of its own, and notes when its first byte comes. Then
/// it hangs up.
class FirstByteListener final
{
    Q_DISABLE_COPY_MOVE(FirstByteListener)

public:
    using Clock = std::chrono::steady_clock;

    FirstByteListener();
    ~FirstByteListener();

    /// Of the listener, as a URL.
    QString address() const;

    /// When the first byte came, once it has.
    std::optional<Clock::time_point> firstByte() const;

private:
    void listen();

    int m_socket = -1;
    int m_port = 0;
    std::atomic<Clock::rep> m_moment = 0; ///< 0 as long as there is none.
    std::thread m_thread;
};

} // namespace quilmora::bench
