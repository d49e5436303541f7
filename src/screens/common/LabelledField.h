#pragma once

#include "screens/common/TextField.h"
#include "screens/common/TextLabel.h"

#include <QWidget>

namespace quilmora
{

/// A one-line text field under its label and above a hint.
class LabelledField final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LabelledField)

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
        bool isMasked = false; ///< Whether it shows dots for what is typed, and tells nobody of it.
    };

    LabelledField(const Texts &texts, const Look &look, QWidget *parent = nullptr);
    ~LabelledField() override = default;

    /// The field itself, owned by this.
    TextField *field() const { return input; }

    QString text() const { return input->text(); }

private:
    TextField *input;
};

/// A text field in the application's look, with the system font at that size.
TextField *makeTextField(const QString &accessibleName, const QString &placeholder, int pixelSize,
                         QWidget *parent, bool isMasked = false);

} // namespace quilmora
