#pragma once

#include "ui/widgets/TextField.h"

namespace quilmora {

/// A text field for a secret: it shows dots, and neither the clipboard, nor input methods, nor assistive
/// programs get its text. Qt's own password field reports a text that is set to assistive programs.
class MaskedField final : public TextField
{
    Q_OBJECT

public:
    explicit MaskedField(QWidget *parent = nullptr);

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    /// Draws the dots itself, since the size of the bullet differs much between fonts.
    void paintEvent(QPaintEvent *event) override;

private:
    QRect textArea() const;
};

} // namespace quilmora
