#include "screens/common/ClampedText.h"

#include <QColor>
#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>
#include <QTextBoundaryFinder>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// More than any screen shows of a few lines; what lies behind costs no time.
constexpr qsizetype longestText = 4000;

const QString ellipsis = u"…"_s;

/// `text` without the part that could never be shown, cut between two characters as a reader sees them.
QString shortened(const QString &text)
{
    if (text.size() <= longestText) {
        return text;
    }
    QTextBoundaryFinder finder{QTextBoundaryFinder::Grapheme, text};
    finder.setPosition(longestText);
    const qsizetype end = finder.isAtBoundary() ? longestText : finder.toPreviousBoundary();
    return text.left(end > 0 ? end : longestText) + ellipsis;
}

QTextOption options(const QString &paragraph, Qt::Alignment alignment)
{
    QTextOption option{alignment | Qt::AlignAbsolute};
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(paragraph.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    return option;
}

/// A blank at the end of a line takes no place.
QString withoutEndingBlanks(QString line)
{
    while (!line.isEmpty() && line.back().isSpace()) {
        line.chop(1);
    }
    return line;
}

/// Breaks one paragraph into at most `count` lines. The last of them holds all that is left.
QStringList brokenParagraph(const QString &paragraph, const QFont &font, double width, qsizetype count)
{
    QTextLayout layout{paragraph, font};
    layout.setTextOption(options(paragraph, Qt::AlignLeft));
    layout.beginLayout();
    QStringList lines;
    while (lines.size() + 1 < count) {
        QTextLine line = layout.createLine();
        if (!line.isValid()) {
            break;
        }
        line.setLineWidth(width);
        lines.append(withoutEndingBlanks(paragraph.mid(line.textStart(), line.textLength())));
    }
    const QTextLine last = layout.createLine();
    if (last.isValid()) {
        lines.append(withoutEndingBlanks(paragraph.mid(last.textStart())));
    }
    layout.endLayout();
    return lines.isEmpty() ? QStringList{QString{}} : lines;
}

} // namespace

ClampedText::ClampedText(const QString &shown, const QFont &textFont, int lineCount, Qt::Alignment align)
    : text{shortened(shown)},
      font{textFont},
      maximumLines{lineCount},
      alignment{align}
{
    text.replace(u"\r\n"_s, u"\n"_s);
    text.replace(u'\r', u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(u'\t', u' ');
}

QStringList ClampedText::lines(int width) const
{
    QStringList lines;
    qsizetype from = 0;
    bool more = true;
    while (more && lines.size() < maximumLines) {
        const qsizetype end = text.indexOf(u'\n', from);
        more = end >= 0;
        lines +=
            brokenParagraph(text.mid(from, more ? end - from : -1), font, width, maximumLines - lines.size());
        from = end + 1;
    }
    more = more && from < text.size();
    QString &last = lines.last();
    last = QFontMetricsF{font}.elidedText(more ? last + ellipsis : last, Qt::ElideRight, width);
    return lines;
}

int ClampedText::heightOfLines(const QFont &font, int lines)
{
    return lines * QFontMetrics{font}.height();
}

int ClampedText::height(int width) const
{
    return heightOfLines(font, static_cast<int>(lines(width).size()));
}

int ClampedText::draw(QPainter &painter, const QRectF &bounds, const QColor &color) const
{
    painter.setPen(color);
    const int lineHeight = heightOfLines(font, 1);
    double top = bounds.top();
    const QStringList shown = lines(static_cast<int>(bounds.width()));
    for (const QString &line : shown) {
        QTextLayout layout{line, font};
        layout.setTextOption(options(line, alignment));
        layout.beginLayout();
        QTextLine set = layout.createLine();
        if (set.isValid()) {
            set.setNumColumns(static_cast<int>(line.size()), bounds.width());
        }
        layout.endLayout();
        layout.draw(&painter, {bounds.left(), top});
        top += lineHeight;
    }
    return lineHeight * static_cast<int>(shown.size());
}

} // namespace quilmora
