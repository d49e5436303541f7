#pragma once

#include "screens/common/TextLabel.h"

#include <QLineEdit>
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
    QLineEdit *field() const { return input; }

    QString text() const { return input->text(); }

private:
    QLineEdit *input;
};

/// A text field in the application's look, with the system font at that size.
QLineEdit *makeTextField(const QString &accessibleName, const QString &placeholder, int pixelSize,
                         QWidget *parent, bool isMasked = false);

} // namespace quilmora
