#pragma once

#include "screens/common/TextField.h"

namespace quilmora
{

/// A text field whose text nobody but the program gets: it is drawn as dots, cannot be copied, and neither
/// input methods nor assistive programs are handed it. Qt's own masked field tells the latter every
/// text that is put into it.
class MaskedField final : public TextField
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MaskedField)

public:
    explicit MaskedField(QWidget *parent = nullptr);
    ~MaskedField() override = default;

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    /// The dots are drawn, not written: a font's own bullet is a speck in one font and a boulder in the next.
    void paintEvent(QPaintEvent *event) override;

private:
    /// Where texts may be drawn, in this widget's coordinates.
    QRect textArea() const;
};

} // namespace quilmora
