#pragma once

#include <QList>
#include <QtGlobal>

struct xcb_connection_t;

namespace quilmora::test {

/// Stands for the window manager and the keyboard of a virtual screen that has neither.
class WindowManager final
{
public:
    using Window = quint32;

    /// Connects to the display that the environment names.
    WindowManager();
    Q_DISABLE_COPY_MOVE(WindowManager)
    ~WindowManager();

    /// The windows of that process that are on screen, the topmost one first.
    QList<Window> windowsOf(qint64 process) const;

    /// Asks the window to close, as its close button does.
    void requestClose(Window window);

    /// Gives the keyboard to the window and presses the key of that letter there, with Ctrl held down.
    void pressWithControl(Window window, char letter);

private:
    void sendKey(Window window, quint8 response, quint8 keycode);
    quint8 keycodeOf(char letter) const;
    quint32 atom(const char *name) const;
    bool belongsTo(Window window, qint64 process) const;

    xcb_connection_t *const m_connection;
    Window m_root = 0;
    const quint32 m_protocols;
    const quint32 m_deleteWindow;
    const quint32 m_processOfWindow;
};

} // namespace quilmora::test
