#pragma once

#include "screens/common/PaintedButton.h"

namespace quilmora
{

/// One of several exclusive choices side by side, of which one is checked. Subclasses draw it; the neighbours
/// of the same parent are unchecked when this one is checked.
class OptionButton : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(OptionButton)

public:
    /// `name` is what screen readers say.
    OptionButton(const QString &name, QWidget *parent);
    ~OptionButton() override = default;

Q_SIGNALS:
    /// This one was checked, by mouse, keyboard or screen reader (which toggles without a click).
    void chosen();
};

} // namespace quilmora
