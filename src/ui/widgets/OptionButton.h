#pragma once

#include "ui/widgets/PaintedButton.h"

namespace quilmora {

/// One of the exclusive choices among the children of a widget.
class OptionButton : public PaintedButton
{
    Q_OBJECT

public:
    OptionButton(const QString &accessibleName, QWidget *parent);

Q_SIGNALS:
    /// It was checked, by mouse, keyboard or screen reader (which toggles without a click).
    void chosen();
};

} // namespace quilmora
