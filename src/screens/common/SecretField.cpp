#include "screens/common/SecretField.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

#include <algorithm>

namespace quilmora
{
namespace
{

/// Of the height of the font.
constexpr double dotDiameter = 0.5;

} // namespace

SecretField::SecretField(QWidget *parent) : QLineEdit{parent}
{
    setEchoMode(QLineEdit::Password);
}

QRect SecretField::textArea() const
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    return style()->subElementRect(QStyle::SE_LineEditContents, &option, this) - textMargins();
}

void SecretField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    const QString blanks = displayText();
    if (blanks.isEmpty()) {
        return;
    }
    const double advance = QFontMetricsF{font()}.horizontalAdvance(blanks.front());
    const QRect cursor = cursorRect();
    // The text starts where the cursor would stand at its beginning, outside the field once it has been
    // scrolled.
    const double start = cursor.x() + cursor.width() / 2.0 - cursorPosition() * advance;
    const double radius = font().pixelSize() * dotDiameter / 2;
    const double middle = QRectF{rect()}.center().y();

    const QRect area = textArea();
    const auto first = std::max<qsizetype>(0, static_cast<qsizetype>((area.left() - start) / advance) - 1);
    const auto last = std::min(blanks.size(), static_cast<qsizetype>((area.right() - start) / advance) + 2);

    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(area);
    painter.setPen(Qt::NoPen);
    for (qsizetype i = first; i < last; ++i) {
        const bool isSelected = i >= selectionStart() && i < selectionEnd();
        painter.setBrush(palette().brush(isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter.drawEllipse(QPointF{start + (static_cast<double>(i) + 0.5) * advance, middle}, radius,
                            radius);
    }
}

} // namespace quilmora
