#include "ui/widgets/PaintedButton.h"

#include "ui/style/FocusRing.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QPainter>

namespace quilmora {

PaintedButton::PaintedButton(const QString &accessibleName, QWidget *parent) : QAbstractButton{parent}
{
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    showsFocusRing(Qt::NoFocusReason, false);
    // Moving the focus commits too, but screen readers press without it.
    connect(this, &PaintedButton::pressed, QGuiApplication::inputMethod(), &QInputMethod::commit);
}

void PaintedButton::focusInEvent(QFocusEvent *event)
{
    m_focusByKeyboard = showsFocusRing(event->reason(), m_focusByKeyboard);
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

void PaintedButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
}

OptionButton::OptionButton(const QString &accessibleName, QWidget *parent)
    : PaintedButton{accessibleName, parent}
{
    setCheckable(true);
    setAutoExclusive(true);
    setAttribute(Qt::WA_Hover);
    // Tab reaches the checked one only, the arrow keys the others.
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &OptionButton::toggled, this, [this](bool checked) {
        setFocusPolicy(checked ? Qt::StrongFocus : Qt::ClickFocus);
        if (checked) {
            Q_EMIT chosen();
        }
    });
}

} // namespace quilmora
