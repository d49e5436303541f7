#include "screens/common/TextEditor.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QEvent>
#include <QPainter>

namespace quilmora
{
namespace
{

constexpr double cornerRadius = 6;
constexpr int innerPadding = 4;

} // namespace

TextEditor::TextEditor(int pixelSize, QWidget *parent) : QPlainTextEdit{parent}
{
    setFont(systemFont(pixelSize));
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Never hidden, only without a thumb where nothing scrolls: the toolkit crashes when a screen reader asks
    // for a bar that has gone since the children were counted.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    document()->setDocumentMargin(0);
    setViewportMargins(innerPadding, innerPadding, innerPadding, innerPadding);
    viewport()->setAutoFillBackground(false);
}

QString TextEditor::text() const
{
    return document()
        ->toRawText()
        .replace(QChar::ParagraphSeparator, u'\n')
        .replace(QChar::LineSeparator, u'\n');
}

bool TextEditor::event(QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        if (isFramed()) {
            paintFrame();
        }
        return true;
    }
    return QPlainTextEdit::event(event);
}

bool TextEditor::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    return QPlainTextEdit::viewportEvent(event);
}

void TextEditor::paintFrame()
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = continuousRoundedRect(insideLine(rect(), 1), cornerRadius);
    painter.fillPath(outline, themeColor(ColorRole::textBackground));
    painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), 1});
    if (hasFocus()) {
        drawFocusRing(painter, outline);
    }
}

} // namespace quilmora
