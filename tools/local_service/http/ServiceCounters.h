#pragma once

#include <QByteArray>

#include <atomic>

namespace quilmora
{

/// What the service has done so far. Thread-safe.
class ServiceCounters final
{
public:
    /// Counts one request as under way for the lifetime of this object.
    class Visit final
    {
    public:
        explicit Visit(ServiceCounters &counters);
        ~Visit();
        Q_DISABLE_COPY_MOVE(Visit)

    private:
        ServiceCounters &m_counters;
    };

    void countAnswer() { ++m_answered; }

    int requests() const { return m_requests; }     ///< Generation requests, good and bad.
    int answered() const { return m_answered; }     ///< Those that got a picture.
    int underWay() const { return m_underWay; }     ///< Those being worked on right now.
    int mostAtOnce() const { return m_mostAtOnce; } ///< The highest number ever under way together.

    /// {"requests":…,"answered":…,"under_way":…,"most_at_once":…}
    QByteArray toJson() const;

private:
    std::atomic<int> m_requests = 0;
    std::atomic<int> m_answered = 0;
    std::atomic<int> m_underWay = 0;
    std::atomic<int> m_mostAtOnce = 0;
};

} // namespace quilmora
