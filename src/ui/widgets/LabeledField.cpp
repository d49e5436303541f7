#include "ui/widgets/LabeledField.h"

#include "platform/UnicodeText.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Fonts.h"
#include "ui/widgets/TextField.h"

#include <QFontMetrics>
#include <QVBoxLayout>

#include <limits>

namespace quilmora {

TextField *makeTextField(const QString &accessibleName, const QString &placeholder, int pixelSize,
                         QWidget *parent, bool isMasked)
{
    TextField *field = isMasked ? new MaskedField{parent} : new TextField{parent};
    field->setAccessibleName(accessibleName);
    field->setPlaceholderText(placeholder);
    field->setFont(systemFont(pixelSize));
    field->setMaxLength(std::numeric_limits<int>::max());
    field->setMinimumHeight(QFontMetrics{field->font()}.height() + 10);
    field->setTextMargins(4, 0, 4, 0);
    QObject::connect(field, &QLineEdit::textChanged, field, [field](const QString &text) {
        if (!unicodeText::isValid(text)) {
            const int cursor = field->cursorPosition();
            field->setText(unicodeText::sanitize(text));
            field->setCursorPosition(cursor);
        }
    });
    return field;
}

LabeledField::LabeledField(const Texts &texts, const Look &look, QWidget *parent)
    : QWidget{parent},
      m_input{makeTextField(texts.label, texts.placeholder, look.fieldPixelSize, this, look.isMasked)}
{
    auto *hint = new TextLabel{texts.hint, look.hint, this};
    hint->setWordWrap(true);
    m_input->setAccessibleDescription(texts.hint);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(new TextLabel{texts.label, look.label, this});
    column->addWidget(m_input);
    column->addWidget(hint);
    readInLayoutOrder(*column);
}

} // namespace quilmora
