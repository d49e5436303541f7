#include "ui/widgets/TextEditor.h"

#include "platform/UnicodeText.h"
#include "ui/style/FieldFrame.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"

#include <QEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>

namespace quilmora {
namespace {

constexpr int innerPadding = 4;
/// Aligns the text with that of fields.
constexpr int textInset = 3;

} // namespace

TextEditor::TextEditor(int pixelSize, QWidget *parent) : QPlainTextEdit{parent}
{
    setFont(systemFont(pixelSize));
    setFrameShape(QFrame::NoFrame);
    setTabChangesFocus(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(0);
    setViewportMargins(innerPadding + textInset, innerPadding, innerPadding + textInset, innerPadding);
    viewport()->setAutoFillBackground(false);
    // Lines are wrapped, but one may be wider by a rounding error, and would scroll.
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this,
            [this] { horizontalScrollBar()->setRange(0, 0); });
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
        paintFrame();
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
    if (isFramed()) {
        drawFieldFrame(painter, rect(), hasFocus());
    } else if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        drawFocusRing(painter,
                      continuousRoundedRect(PixelSnapper{painter}.aligned(rect()), measures::controlRadius));
    }
}

void TextEditor::insertFromMimeData(const QMimeData *source)
{
    insertPlainText(unicodeText::sanitize(source->text()));
    ensureCursorVisible();
}

} // namespace quilmora
