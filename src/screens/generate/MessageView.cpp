#include "screens/generate/MessageView.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

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

QSize MessageView::sizeHint() const
{
    return {usualWidth, heightForWidth(usualWidth)};
}

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

bool MessageView::isFramed() const
{
    return verticalScrollBar()->maximum() > 0;
}

QMimeData *MessageView::createMimeDataFromSelection() const
{
    const QTextCursor selection = textCursor();
    auto *copied = new QMimeData;
    copied->setText(m_lines.originalBetween(selection.selectionStart(), selection.selectionEnd()));
    return copied;
}

} // namespace quilmora
