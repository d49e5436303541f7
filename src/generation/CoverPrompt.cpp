#include "generation/CoverPrompt.h"

#include "generation/CoverInputs.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

bool isBlankOrTab(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

QString expressionText(const CoverInputs &inputs)
{
    return inputs.selectedEmotion.isCustom() ? withoutOuterBlanks(inputs.customEmotion)
                                             : inputs.selectedEmotion.name;
}

} // namespace

QString withoutOuterBlanks(const QString &text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), isBlankOrTab);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlankOrTab).base();
    return first < last ? QString{first, last - first} : QString{};
}

QString composePrompt(const CoverInputs &inputs)
{
    QStringList pieces{u"生成一张视频封面图。"_s};
    if (!inputs.titleText.isEmpty()) {
        pieces.append(u"封面主标题文字：「"_s + inputs.titleText + u"」，标题需突出醒目、具有冲击力。"_s);
    }
    if (!inputs.sceneText.isEmpty()) {
        pieces.append(u"背景场景："_s + inputs.sceneText + u"。"_s);
    }
    const QString expression = expressionText(inputs);
    if (!expression.isEmpty() && !Emotion{expression}.isCustom()) {
        pieces.append(u"人物表情："_s + expression + u"。"_s);
    }
    if (!withoutOuterBlanks(inputs.advancedText).isEmpty()) {
        pieces.append(u"额外风格指令："_s + inputs.advancedText + u"。"_s);
    }
    pieces.append(u"整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    return pieces.join(u' ');
}

} // namespace quilmora
