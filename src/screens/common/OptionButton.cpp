#include "screens/common/OptionButton.h"

#include <QFocusEvent>

namespace quilmora
{

OptionButton::OptionButton(const QString &name, QWidget *parent) : QAbstractButton{parent}
{
    setAccessibleName(name);
    setCheckable(true);
    setAutoExclusive(true);
    // The Tab key visits the checked one alone; the arrow keys go from there to the others.
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &OptionButton::toggled, this,
            [this](bool checked) { setFocusPolicy(checked ? Qt::StrongFocus : Qt::ClickFocus); });
    setAttribute(Qt::WA_Hover);
    connect(this, &OptionButton::toggled, this, [this](bool checked) {
        if (checked) {
            Q_EMIT chosen();
        }
    });
}

bool OptionButton::showsFocus() const
{
    return hasFocus() && focusByKeyboard;
}

void OptionButton::focusInEvent(QFocusEvent *event)
{
    focusByKeyboard = event->reason() != Qt::MouseFocusReason;
    QAbstractButton::focusInEvent(event);
}

void OptionButton::focusOutEvent(QFocusEvent *event)
{
    QAbstractButton::focusOutEvent(event);
    update();
}

} // namespace quilmora
