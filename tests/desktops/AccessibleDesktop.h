#pragma once

#include <QRect>
#include <QStringList>

struct _AtspiEventListener;

namespace quilmora::test {

/// What a screen reader sees of the applications on this desktop. Names are those that it would say.
class AccessibleDesktop final
{
public:
    /// Connects to the accessibility bus.
    AccessibleDesktop();
    Q_DISABLE_COPY_MOVE(AccessibleDesktop)
    ~AccessibleDesktop();

    /// Whether something of that name is on screen, be it a control or a text.
    bool isShowing(const QString &name);

    /// Whether a control of that name is on screen and can be used, is checked, or has the keyboard focus.
    bool isUsable(const QString &name);
    bool isChecked(const QString &name);
    bool hasFocus(const QString &name);

    /// Where something of that name is, in points: on X11 on the screen, on Wayland within its window.
    QRect bounds(const QString &name);

    /// Presses or toggles the control of that name; false when that is not possible.
    bool act(const QString &name);

    /// Replaces the text of the field of that name.
    bool setText(const QString &name, const QString &text);

    /// The text of the field of that name; empty when it has none or does not tell it.
    QString content(const QString &name);

    /// All names, descriptions and texts on the desktop, whether on screen or not.
    QStringList texts();

    /// From now on keeps the texts that the applications announce by themselves as they change.
    void listen();
    const QStringList &heard() const { return m_announced; }

private:
    QStringList m_announced;
    _AtspiEventListener *m_listener = nullptr;
};

} // namespace quilmora::test
