#include "local_service/cover/PromptReader.h"

#include <QStringView>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace quilmora::promptReader
{
namespace
{

constexpr QStringView titleHeading = u"封面主标题文字：「";
constexpr QStringView titleEnd = u"」，标题需突出醒目、具有冲击力。";
constexpr QStringView sceneHeading = u"背景场景：";
constexpr QStringView expressionHeading = u"人物表情：";
constexpr QStringView styleHeading = u"额外风格指令：";
constexpr QStringView overallHeading = u"整体风格：";
constexpr std::array laterHeadings{sceneHeading, expressionHeading, styleHeading, overallHeading};

/// Where `heading` stands at the start of a sentence at or after `from`, or -1.
qsizetype findHeading(QStringView prompt, QStringView heading, qsizetype from)
{
    for (qsizetype at = prompt.indexOf(heading, from); at >= 0; at = prompt.indexOf(heading, at + 1)) {
        if (at == 0 || prompt[at - 1].isSpace()) {
            return at;
        }
    }
    return -1;
}

/// Reads the title and returns where the rest of the prompt begins.
qsizetype readTitle(QStringView prompt, QString &title)
{
    const qsizetype heading = findHeading(prompt, titleHeading, 0);
    if (heading < 0) {
        return 0;
    }
    const qsizetype begin = heading + titleHeading.size();
    qsizetype end = prompt.indexOf(titleEnd, begin);
    qsizetype rest = end + titleEnd.size();
    if (end < 0) {
        end = prompt.indexOf(u'」', begin);
        rest = end + 1;
    }
    if (end < 0) {
        end = rest = prompt.size();
    }
    title = prompt.sliced(begin, end - begin).toString();
    return rest;
}

/// The text behind `heading`, up to the full stop before the next heading.
QString readPiece(QStringView prompt, QStringView heading, qsizetype from)
{
    const qsizetype at = findHeading(prompt, heading, from);
    if (at < 0) {
        return {};
    }
    const qsizetype begin = at + heading.size();
    qsizetype end = prompt.size();
    for (const QStringView next : laterHeadings) {
        const qsizetype nextAt = findHeading(prompt, next, begin);
        if (nextAt >= 0) {
            end = std::min(end, nextAt);
        }
    }
    QStringView piece = prompt.sliced(begin, end - begin).trimmed();
    if (piece.endsWith(u'。')) {
        piece.chop(1);
    }
    return piece.trimmed().toString();
}

} // namespace

CoverPrompt read(const QString &prompt)
{
    CoverPrompt result;
    const qsizetype rest = readTitle(prompt, result.title);
    result.scene = readPiece(prompt, sceneHeading, rest);
    result.expression = readPiece(prompt, expressionHeading, rest);
    result.style = readPiece(prompt, styleHeading, rest);
    const bool hasHeading =
        rest > 0 || std::any_of(laterHeadings.begin(), laterHeadings.end(), [&prompt](QStringView heading) {
            return findHeading(prompt, heading, 0) >= 0;
        });
    if (!hasHeading) {
        result.scene = prompt.trimmed();
    }
    return result;
}

} // namespace quilmora::promptReader
