#include "ui/widgets/OptionButton.h"

namespace quilmora {

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
