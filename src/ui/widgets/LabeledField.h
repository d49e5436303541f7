#pragma once

#include "ui/widgets/TextField.h"
#include "ui/widgets/TextLabel.h"

#include <QWidget>

namespace quilmora {

/// A one-line text field under its label and above a hint.
class LabeledField final : public QWidget
{
    Q_OBJECT

public:
    struct Texts {
        QString label; ///< Also the field's name for screen readers.
        QString placeholder;
        QString hint;
    };

    struct Look {
        TextLabel::Style label;
        int fieldPixelSize;
        TextLabel::Style hint;
        bool isMasked = false; ///< See MaskedField.
    };

    LabeledField(const Texts &texts, const Look &look, QWidget *parent = nullptr);

    TextField *field() const { return m_input; }

    QString text() const { return m_input->text(); }

private:
    TextField *m_input;
};

/// A text field with the system font at that size.
TextField *makeTextField(const QString &accessibleName, const QString &placeholder, int pixelSize,
                         QWidget *parent, bool isMasked = false);

} // namespace quilmora
