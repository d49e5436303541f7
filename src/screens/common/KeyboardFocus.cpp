#include "screens/common/KeyboardFocus.h"

#include <QCoreApplication>
#include <QEvent>

namespace quilmora
{
namespace
{

/// Remembers whether the user last pressed a key or a mouse button, in whichever window.
class LastInput final : public QObject
{
public:
    LastInput() { QCoreApplication::instance()->installEventFilter(this); }

    bool isByKeyboard() const { return byKeyboard; }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            byKeyboard = true;
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

bool isKeyboardFocus(Qt::FocusReason reason)
{
    const bool byKeyboard = lastInput().isByKeyboard();
    switch (reason) {
    case Qt::MouseFocusReason:
        return false;
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    default:
        // Set by the program, or back from another window.
        return byKeyboard;
    }
}

} // namespace quilmora
