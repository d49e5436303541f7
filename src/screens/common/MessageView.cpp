#include "screens/common/MessageView.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int greatestHeight = 320;
/// Wide enough for the scroll bar to lie beside the text.
constexpr int sidePadding = 14;
constexpr int verticalPadding = 6;
/// Qt scrolls as soon as less than this is left below the last line.
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

/// So high that no line is cut.
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
      lines{message}
{
    setReadOnly(true);
    // Screen readers read what the cursor moves over.
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setAccessibleName(accessibleName);
    QTextOption option = document()->defaultTextOption();
    option.setAlignment(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDefaultTextOption(option);
    setPlainText(lines.shown());
    // The frame comes and goes with the scroll bar.
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
    // Enough of it to know; the rest of a long message is not looked at.
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
    // A message without a frame stands by itself, as a label would.
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
    copied->setText(lines.originalBetween(selection.selectionStart(), selection.selectionEnd()));
    return copied;
}

} // namespace quilmora
