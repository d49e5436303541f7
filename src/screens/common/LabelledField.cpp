#include "screens/common/LabelledField.h"

#include "screens/common/Fonts.h"
#include "screens/common/MaskedField.h"
#include "screens/common/ReadingOrder.h"

#include <QFontMetrics>
#include <QVBoxLayout>

#include <limits>

namespace quilmora
{
namespace
{

void setUp(QLineEdit *field, const QString &accessibleName, const QString &placeholder, int pixelSize)
{
    field->setAccessibleName(accessibleName);
    field->setPlaceholderText(placeholder);
    field->setFont(systemFont(pixelSize));
    field->setMaxLength(std::numeric_limits<int>::max());
    field->setMinimumHeight(QFontMetrics{field->font()}.height() + 10);
    field->setTextMargins(4, 0, 4, 0);
}

} // namespace

QLineEdit *makeTextField(const QString &accessibleName, const QString &placeholder, int pixelSize,
                         QWidget *parent)
{
    auto *field = new QLineEdit{parent};
    setUp(field, accessibleName, placeholder, pixelSize);
    return field;
}

LabelledField::LabelledField(const Texts &texts, const Look &look, QWidget *parent)
    : QWidget{parent},
      input{look.isMasked ? new MaskedField{this} : new QLineEdit{this}}
{
    setUp(input, texts.label, texts.placeholder, look.fieldPixelSize);
    auto *hint = new TextLabel{texts.hint, look.hint, this};
    hint->setWordWrap(true);
    input->setAccessibleDescription(texts.hint);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(new TextLabel{texts.label, look.label, this});
    column->addWidget(input);
    column->addWidget(hint);
    readInLayoutOrder(*column);
}

} // namespace quilmora
