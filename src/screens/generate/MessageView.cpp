#include "screens/generate/MessageView.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

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

constexpr int greatestHeight = 320;
constexpr int sidePadding = 14; ///< Room for the scroll bar.
constexpr int verticalPadding = 6;
/// With less below the last line, Qt scrolls.
constexpr int roomBelow = 2;
constexpr double greatestTextHeight = greatestHeight - 2 * verticalPadding - roomBelow;
constexpr int usualWidth = 400;

/// Height of a paragraph in a column of that width, in device-independent pixels.
double paragraphHeight(const QString &paragraph, const QFont &font, const QTextOption &option, double width)
{
    QTextLayout layout{paragraph, font};
    layout.setTextOption(option);
    layout.beginLayout();
    double height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(width);
        height += line.height();
    }
    layout.endLayout();
    return height;
}

/// A whole number of lines.
int scrolledHeight(const QFont &font, const QTextOption &option)
{
    const double line = paragraphHeight(u"行"_s, font, option, usualWidth);
    const double lines = std::floor((greatestHeight - 2 * verticalPadding) / line);
    return 2 * verticalPadding + static_cast<int>(std::ceil(lines * line));
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

void MessageLines::mark(qsizetype place) { m_marks.push_back({m_display.size(), place}); }

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

MessageView::MessageView(const QString &message, int pixelSize, const QString &accessibleName,
                         QWidget *parent)
    : TextEditor{pixelSize, parent},
      m_lines{message}
{
    setReadOnly(true);
    // Screen readers read at the cursor.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAccessibleName(accessibleName);
    QTextOption option = document()->defaultTextOption();
    option.setAlignment(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDefaultTextOption(option);
    setPlainText(m_lines.shown());
    // Only a view with a scroll bar has a frame.
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] { update(); });
}

QSize MessageView::sizeHint() const { return {usualWidth, heightForWidth(usualWidth)}; }

int MessageView::heightForWidth(int width) const
{
    const double text = textHeight(width);
    return text < greatestTextHeight ? static_cast<int>(std::ceil(text)) + roomBelow
                                     : scrolledHeight(font(), document()->defaultTextOption());
}

double MessageView::textHeight(int width) const
{
    const double column = std::max(1, width - 2 * sidePadding);
    double height = 0;
    for (QTextBlock block = document()->begin(); block.isValid() && height < greatestTextHeight;
         block = block.next()) {
        height += paragraphHeight(block.text(), font(), document()->defaultTextOption(), column);
    }
    return height;
}

void MessageView::keyPressEvent(QKeyEvent *event)
{
    const bool isPlain = event->modifiers() == Qt::NoModifier;
    if (isPlain && (event->key() == Qt::Key_Home || event->key() == Qt::Key_End)) {
        moveCursor(event->key() == Qt::Key_Home ? QTextCursor::Start : QTextCursor::End);
    } else {
        TextEditor::keyPressEvent(event);
    }
}

void MessageView::resizeEvent(QResizeEvent *event)
{
    // Without a frame it looks like a label.
    const int padding = textHeight(width()) < greatestTextHeight ? 0 : verticalPadding;
    if (viewportMargins() != QMargins{sidePadding, padding, sidePadding, padding}) {
        setViewportMargins(sidePadding, padding, sidePadding, padding);
    }
    TextEditor::resizeEvent(event);
}

bool MessageView::isFramed() const { return verticalScrollBar()->maximum() > 0; }

QMimeData *MessageView::createMimeDataFromSelection() const
{
    const QTextCursor selection = textCursor();
    auto *copied = new QMimeData;
    copied->setText(m_lines.originalBetween(selection.selectionStart(), selection.selectionEnd()));
    return copied;
}

} // namespace quilmora
