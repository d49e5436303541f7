#include "screens/common/PaintedButton.h"

#include "screens/common/KeyboardFocus.h"

#include <QFocusEvent>

namespace quilmora
{

PaintedButton::PaintedButton(QWidget *parent) : QAbstractButton{parent}
{
    isKeyboardFocus(Qt::NoFocusReason);
}

void PaintedButton::focusInEvent(QFocusEvent *event)
{
    focusByKeyboard = isKeyboardFocus(event->reason());
    QAbstractButton::focusInEvent(event);
}

} // namespace quilmora
