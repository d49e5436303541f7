#include "screens/common/TextEditor.h"

#include "platform/WellFormedText.h"
#include "screens/common/FieldFrame.h"
#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"

#include <QEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>

namespace quilmora
{
namespace
{

constexpr int innerPadding = 4;
/// Across, the text keeps away from the focus ring, and stands in line with that of fields.
constexpr int textInset = 3;
constexpr double unframedRadius = 6;

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
    // All lines are broken to fit, but one may be a little wider by rounding, and would slide to and fro.
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
        drawFocusRing(painter, continuousRoundedRect(PixelGrid{painter}.aligned(rect()), unframedRadius));
    }
}

void TextEditor::insertFromMimeData(const QMimeData *source)
{
    insertPlainText(wellFormedText::from(source->text()));
    ensureCursorVisible();
}

} // namespace quilmora
