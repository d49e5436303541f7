#include "screens/common/OptionButton.h"

namespace quilmora
{

OptionButton::OptionButton(const QString &name, QWidget *parent) : PaintedButton{parent}
{
    setAccessibleName(name);
    setCheckable(true);
    setAutoExclusive(true);
    setAttribute(Qt::WA_Hover);
    // The Tab key visits the checked one alone; the arrow keys go from there to the others.
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &OptionButton::toggled, this, [this](bool checked) {
        setFocusPolicy(checked ? Qt::StrongFocus : Qt::ClickFocus);
        if (checked) {
            Q_EMIT chosen();
        }
    });
}

} // namespace quilmora
