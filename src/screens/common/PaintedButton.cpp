#include "screens/common/PaintedButton.h"

#include <QCoreApplication>
#include <QFocusEvent>

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

PaintedButton::PaintedButton(QWidget *parent) : QAbstractButton{parent}
{
    // From now on, not only when first asked.
    lastInput();
}

void PaintedButton::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::MouseFocusReason:
        focusByKeyboard = false;
        break;
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        focusByKeyboard = true;
        break;
    default:
        // Set by the program, or back from another window.
        focusByKeyboard = lastInput().isByKeyboard();
    }
    QAbstractButton::focusInEvent(event);
}

} // namespace quilmora
