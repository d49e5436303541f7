#pragma once

#include <QtGlobal>

#include <chrono>

struct xcb_connection_t;

namespace quilmora::bench {

/// Sees on the X display when a program's first window has been painted, whatever the program is made with.
class FirstPaintProbe final
{
public:
    /// Connects to the display named by the environment and gives its empty screen a colour of its own.
    FirstPaintProbe();
    Q_DISABLE_COPY_MOVE(FirstPaintProbe)
    ~FirstPaintProbe();

    /// Forgets what has happened so far.
    void reset();

    /// The time at which the middle of a window that appeared after reset() is no longer the empty screen's.
    /// Ends the program when nothing comes for a minute.
    std::chrono::steady_clock::time_point paintedAt();

private:
    /// The next window that appears.
    quint32 nextWindow();
    bool isPainted(quint32 window) const;

    xcb_connection_t *const m_connection;
    quint32 m_root = 0;
};

} // namespace quilmora::bench
