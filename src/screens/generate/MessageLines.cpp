#include "screens/generate/MessageLines.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace quilmora {
namespace {

/// The layout of a paragraph cannot be interrupted.
constexpr qsizetype longestLine = 2000;
/// A line is broken at a blank among its last characters.
constexpr qsizetype reachForBlank = 200;
/// Every paragraph takes additional time.
constexpr qsizetype mostParagraphs = 20000;

bool isBreak(QChar character)
{
    // QTextDocument uses the last two for frames, which start paragraphs too.
    return character == u'\n' || character == u'\r' || character == QChar::ParagraphSeparator ||
           character == QChar{0xfdd0} || character == QChar{0xfdd1};
}

/// The start of the grapheme cluster at `place`.
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

MessageLines::MessageLines(QString text) : m_original{std::move(text)}
{
    m_display.reserve(m_original.size() + m_original.size() / longestLine + 1);
    const qsizetype lines = std::count_if(m_original.begin(), m_original.end(), isBreak);
    const qsizetype linesPerParagraph = lines / mostParagraphs + 1;
    mark(0);
    qsizetype line = 0;
    qsizetype lineStart = 0;
    for (qsizetype place = 0; place < m_original.size(); ++place) {
        if (!isBreak(m_original.at(place))) {
            continue;
        }
        appendLine(lineStart, place);
        ++line;
        m_display += line % linesPerParagraph == 0 ? QChar{u'\n'} : QChar{QChar::LineSeparator};
        if (QStringView{m_original}.mid(place, 2) == u"\r\n") {
            ++place;
            mark(place + 1);
        }
        lineStart = place + 1;
    }
    appendLine(lineStart, m_original.size());
}

void MessageLines::appendLine(qsizetype from, qsizetype to)
{
    const QStringView all{m_original};
    while (to - from > longestLine) {
        const qsizetype end = breakPlace(m_original, from);
        m_display += all.mid(from, end - from);
        m_display += u'\n';
        mark(end);
        from = end;
    }
    m_display += all.mid(from, to - from);
}

void MessageLines::mark(qsizetype place)
{
    m_marks.push_back({m_display.size(), place});
}

qsizetype MessageLines::originalPlace(qsizetype displayPlace) const
{
    const auto after =
        std::upper_bound(m_marks.begin(), m_marks.end(), displayPlace,
                         [](qsizetype place, const Mark &next) { return place < next.displayPlace; });
    const Mark &before = *std::prev(after);
    const qsizetype place = before.originalPlace + displayPlace - before.displayPlace;
    // An additional break has no original.
    return after == m_marks.end() ? place : std::min(place, after->originalPlace);
}

QString MessageLines::originalBetween(qsizetype from, qsizetype to) const
{
    const qsizetype start = originalPlace(from);
    return m_original.mid(start, originalPlace(to) - start);
}

} // namespace quilmora
