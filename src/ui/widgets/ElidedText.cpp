#include "ui/widgets/ElidedText.h"

#include <QColor>
#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// More than fits on any screen; the rest would only cost time.
constexpr qsizetype longestText = 4000;

const QString ellipsis = u"…"_s;

/// Cut between two grapheme clusters.
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

/// Blanks at the end of a line have no width.
QString withoutEndingBlanks(QString line)
{
    while (!line.isEmpty() && line.back().isSpace()) {
        line.chop(1);
    }
    return line;
}

/// Breaks one paragraph into at most `count` lines, the last of which has the rest of the text.
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

ElidedText::ElidedText(const QString &text, const QFont &font, int maximumLines, Qt::Alignment alignment)
    : m_text{shortened(text)},
      m_font{font},
      m_maximumLines{maximumLines},
      m_alignment{alignment}
{
    m_text.replace(u"\r\n"_s, u"\n"_s);
    m_text.replace(u'\r', u'\n');
    m_text.replace(QChar::LineSeparator, u'\n');
    m_text.replace(QChar::ParagraphSeparator, u'\n');
    m_text.replace(u'\t', u' ');
}

QStringList ElidedText::lines(int width) const
{
    QStringList lines;
    qsizetype from = 0;
    bool more = true;
    while (more && lines.size() < m_maximumLines) {
        const qsizetype end = m_text.indexOf(u'\n', from);
        more = end >= 0;
        lines += brokenParagraph(m_text.mid(from, more ? end - from : -1), m_font, width,
                                 m_maximumLines - lines.size());
        from = end + 1;
    }
    more = more && from < m_text.size();
    QString &last = lines.last();
    last = QFontMetricsF{m_font}.elidedText(more ? last + ellipsis : last, Qt::ElideRight, width);
    return lines;
}

int ElidedText::heightOfLines(const QFont &font, int lines) { return lines * QFontMetrics{font}.height(); }

QSize ElidedText::size(int width) const
{
    const QFontMetricsF metrics{m_font};
    const QStringList shown = lines(width);
    double widest = 0;
    for (const QString &line : shown) {
        widest = std::max(widest, metrics.horizontalAdvance(line));
    }
    return {static_cast<int>(std::ceil(widest)), heightOfLines(m_font, static_cast<int>(shown.size()))};
}

int ElidedText::draw(QPainter &painter, const QRectF &bounds, const QColor &color) const
{
    painter.setPen(color);
    const int lineHeight = heightOfLines(m_font, 1);
    double top = bounds.top();
    const QStringList shown = lines(static_cast<int>(bounds.width()));
    for (const QString &line : shown) {
        QTextLayout layout{line, m_font};
        layout.setTextOption(options(line, m_alignment));
        layout.beginLayout();
        QTextLine only = layout.createLine();
        if (only.isValid()) {
            only.setNumColumns(static_cast<int>(line.size()), bounds.width());
        }
        layout.endLayout();
        layout.draw(&painter, {bounds.left(), top});
        top += lineHeight;
    }
    return lineHeight * static_cast<int>(shown.size());
}

} // namespace quilmora
