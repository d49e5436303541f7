#include "screens/generate/FormSection.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/StepHeader.h"

namespace quilmora
{

FormSection::FormSection(int number, const QString &title, QWidget *parent)
    : QWidget{parent},
      layoutColumn{new QVBoxLayout{this}}
{
    setAccessiblePart(this, {QAccessible::Grouping});
    setAccessibleName(title);
    layoutColumn->setContentsMargins(0, 0, 0, 0);
    layoutColumn->setSpacing(12);
    layoutColumn->addWidget(new StepHeader{number, title, this});
}

} // namespace quilmora
