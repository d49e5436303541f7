#include "screens/generate/SizeSection.h"

#include "screens/generate/SizeCard.h"

using namespace Qt::StringLiterals;

namespace quilmora
{

SizeSection::SizeSection(QWidget *parent)
    : FormSection{1, u"选择尺寸"_s, parent},
      selected{CoverSize::presets().constFirst()}
{
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    for (const CoverSize &size : CoverSize::presets()) {
        auto *card = new SizeCard{size, this};
        card->setChecked(size == selected);
        connect(card, &SizeCard::chosen, this, [this, size] { selected = size; });
        row->addWidget(card, 1);
    }
    column()->addLayout(row);
}

} // namespace quilmora
