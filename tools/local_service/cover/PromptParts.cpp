#include "local_service/cover/PromptParts.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace quilmora::localservice {
namespace {

constexpr auto anySigns =
    QRegularExpression::DotMatchesEverythingOption | QRegularExpression::UseUnicodePropertiesOption;

/// The text behind `heading`, up to the full stop before the next heading.
QString partBehind(const QString &heading, const QString &text)
{
    const QRegularExpression pattern{
        u"(?:\\A|\\s)%1：(.*?)(?=\\s(?:背景场景|人物表情|额外风格指令|整体风格)：|\\z)"_s.arg(heading),
        anySigns};
    QString part = pattern.match(text).captured(1).trimmed();
    if (part.endsWith(u'。')) {
        part.chop(1);
    }
    return part.trimmed();
}

} // namespace

PromptParts PromptParts::of(const QString &prompt)
{
    // The title may hold brackets and headings itself; what follows its end is Quilmora's own sentence.
    static const QRegularExpression titlePattern{
        u"(?:\\A|\\s)封面主标题文字：「(?:(.*?)」，标题需突出醒目、具有冲击力。|([^」]*)」?)"_s, anySigns};
    static const QRegularExpression anyHeading{u"(?:\\A|\\s)(?:背景场景|人物表情|额外风格指令|整体风格)："_s,
                                               anySigns};
    const QRegularExpressionMatch title = titlePattern.match(prompt);
    if (!title.hasMatch() && !anyHeading.match(prompt).hasMatch()) {
        return {.title = {}, .scene = prompt.trimmed(), .expression = {}, .style = {}};
    }
    const QString rest = title.hasMatch() ? prompt.sliced(title.capturedEnd()) : prompt;
    return {.title = title.captured(1) + title.captured(2),
            .scene = partBehind(u"背景场景"_s, rest),
            .expression = partBehind(u"人物表情"_s, rest),
            .style = partBehind(u"额外风格指令"_s, rest)};
}

} // namespace quilmora::localservice
