#include "screens/common/KeyboardFocus.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quilmora
{
namespace
{

/// Whether the key does nothing alone. Somebody who works by mouse holds one on the way to another window.
bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return true;
    default:
        return false;
    }
}

/// Remembers whether the user last pressed a key or a mouse button, in whichever window.
class LastInput final : public QObject
{
public:
    LastInput() { QCoreApplication::instance()->installEventFilter(this); }

    bool isByKeyboard() const { return byKeyboard; }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            byKeyboard = byKeyboard || !isModifier(static_cast<const QKeyEvent *>(event)->key());
        } else if (event->type() == QEvent::MouseButtonPress) {
            byKeyboard = false;
        }
        return false;
    }

private:
    bool byKeyboard = false;
};

const LastInput &lastInput()
{
    static const LastInput input;
    return input;
}

} // namespace

bool isKeyboardFocus(Qt::FocusReason reason, bool wasMarked)
{
    const bool byKeyboard = lastInput().isByKeyboard();
    switch (reason) {
    case Qt::MouseFocusReason:
        return false;
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::PopupFocusReason:
        return wasMarked;
    default:
        // Set by the program, or back from another window.
        return byKeyboard;
    }
}

} // namespace quilmora
