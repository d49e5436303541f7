#include "screens/common/MessageLines.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace quilmora
{
namespace
{

/// Laying out a paragraph takes a time that grows with its length, and it is done in one go.
constexpr qsizetype longestLine = 2000;
/// How far back from there a blank is looked for to break at.
constexpr qsizetype reachForBlank = 200;
/// Every paragraph costs the view some time of its own.
constexpr qsizetype mostParagraphs = 20000;

bool isBreak(QChar character)
{
    // The last two stand for frames inside Qt's documents, which start paragraphs too.
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator ||
           character == QChar{0xfdd0} || character == QChar{0xfdd1};
}

/// The nearest place at or before `place` that does not lie inside a user-perceived character.
qsizetype characterStart(const QString &text, qsizetype place)
{
    constexpr qsizetype around = 64;
    const qsizetype windowStart = place - around;
    const QString window = text.mid(windowStart, 2 * around);
    QTextBoundaryFinder finder{QTextBoundaryFinder::Grapheme, window};
    finder.setPosition(around);
    const qsizetype start = finder.isAtBoundary() ? around : finder.toPreviousBoundary();
    return start > 0 ? windowStart + start : place;
}

/// Where to break a line that begins at `from` and is too long.
qsizetype breakPlace(const QString &text, qsizetype from)
{
    const qsizetype last = from + longestLine;
    for (qsizetype place = last; place > last - reachForBlank; --place) {
        if (text.at(place - 1).isSpace()) {
            return place;
        }
    }
    return characterStart(text, last);
}

} // namespace

MessageLines::MessageLines(QString text) : original{std::move(text)}
{
    display.reserve(original.size() + original.size() / longestLine + 1);
    const qsizetype lines = std::count_if(original.begin(), original.end(), isBreak);
    const qsizetype linesPerParagraph = lines / mostParagraphs + 1;
    mark(0);
    qsizetype line = 0;
    qsizetype lineStart = 0;
    for (qsizetype place = 0; place < original.size(); ++place) {
        if (!isBreak(original.at(place))) {
            continue;
        }
        appendLine(lineStart, place);
        ++line;
        display += line % linesPerParagraph == 0 ? QChar{u'\n'} : QChar{QChar::LineSeparator};
        if (QStringView{original}.mid(place, 2) == u"\r\n") {
            ++place;
            mark(place + 1);
        }
        lineStart = place + 1;
    }
    appendLine(lineStart, original.size());
}

void MessageLines::appendLine(qsizetype from, qsizetype to)
{
    const QStringView all{original};
    while (to - from > longestLine) {
        const qsizetype end = breakPlace(original, from);
        display += all.mid(from, end - from);
        display += u'\n';
        mark(end);
        from = end;
    }
    display += all.mid(from, to - from);
}

void MessageLines::mark(qsizetype place)
{
    marks.push_back({display.size(), place});
}

qsizetype MessageLines::originalPlace(qsizetype displayPlace) const
{
    const auto after =
        std::upper_bound(marks.begin(), marks.end(), displayPlace,
                         [](qsizetype place, const Mark &next) { return place < next.displayPlace; });
    const Mark &before = *std::prev(after);
    const qsizetype place = before.originalPlace + displayPlace - before.displayPlace;
    // A break of our own stands for nothing.
    return after == marks.end() ? place : std::min(place, after->originalPlace);
}

QString MessageLines::originalBetween(qsizetype from, qsizetype to) const
{
    const qsizetype start = originalPlace(from);
    return original.mid(start, originalPlace(to) - start);
}

} // namespace quilmora
