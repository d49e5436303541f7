#include "screens/common/PaintedButton.h"

#include "screens/common/KeyboardFocus.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>

namespace quilmora
{

PaintedButton::PaintedButton(QWidget *parent) : QAbstractButton{parent}
{
    isKeyboardFocus(Qt::NoFocusReason, false);
    // Moving the focus does that too, but screen readers press without it.
    connect(this, &PaintedButton::pressed, QGuiApplication::inputMethod(), &QInputMethod::commit);
}

void PaintedButton::focusInEvent(QFocusEvent *event)
{
    focusByKeyboard = isKeyboardFocus(event->reason(), focusByKeyboard);
    QAbstractButton::focusInEvent(event);
}

void PaintedButton::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QAbstractButton::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        click();
    }
}

} // namespace quilmora
