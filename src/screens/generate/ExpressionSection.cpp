#include "screens/generate/ExpressionSection.h"

#include "screens/common/LabelledField.h"
#include "screens/generate/EmotionChip.h"
#include "screens/generate/FlowLayoutHost.h"

using namespace Qt::StringLiterals;

namespace quilmora
{

ExpressionSection::ExpressionSection(QWidget *parent)
    : FormSection{3, u"选择表情"_s, parent},
      selected{Emotion::presets().constFirst()}
{
    auto *chips = new QWidget{this};
    auto *flow = new FlowLayoutHost{chips};
    for (const Emotion &emotion : Emotion::presets()) {
        auto *chip = new EmotionChip{emotion.name, chips};
        chip->setChecked(emotion == selected);
        connect(chip, &EmotionChip::chosen, this, [this, emotion] { select(emotion); });
        flow->addWidget(chip);
    }
    // Made after the chips: the Tab key goes in the order of making.
    const QString placeholder = u"请输入自定义表情描述"_s;
    customField = makeTextField(placeholder, placeholder, 13, this);
    column()->addWidget(chips);
    column()->addWidget(customField);
    select(selected);
}

QString ExpressionSection::customEmotion() const
{
    return customField->text();
}

void ExpressionSection::select(const Emotion &emotion)
{
    selected = emotion;
    customField->setVisible(emotion.isCustom());
}

} // namespace quilmora
