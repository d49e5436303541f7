#include "ui/widgets/TextLabel.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Fonts.h"

#include <QEvent>
#include <QPainter>

#include <cmath>

namespace quilmora {

TextLabel::TextLabel(const QString &text, Style style, QWidget *parent) : QLabel{parent}, m_color{style.color}
{
    setTextFormat(Qt::PlainText);
    setFont(systemFont(style.pixelSize, style.weight));
    setText(text);
    applyColor();
}

void TextLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::PaletteChange) {
        applyColor();
    }
}

void TextLabel::applyColor()
{
    const QColor color = themeColor(m_color);
    if (palette().color(QPalette::WindowText) != color) {
        QPalette changed = palette();
        changed.setColor(QPalette::WindowText, color);
        setPalette(changed);
    }
}

TextLabel *makeNotification(const QString &text, const QString &description, TextLabel::Style style,
                            QWidget *parent)
{
    auto *label = new TextLabel{{}, style, parent};
    setAccessibleRole(label, {QAccessible::Notification});
    // Only now: setting the text creates the accessible interface.
    label->setText(text);
    label->setAccessibleName(text);
    label->setAccessibleDescription(description);
    return label;
}

PageTitle::PageTitle(const QString &text, QWidget *parent) : TextLabel{text, {22, QFont::Bold}, parent} {}

void PageTitle::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setPen(palette().color(QPalette::WindowText));
    // Rounded like the texts of buttons.
    painter.drawText(QPointF{0, std::round(baselineInRow(font(), height()))}, text());
}

ErrorLine::ErrorLine(int pixelSize, QWidget *parent)
    : TextLabel{{}, {pixelSize, QFont::Normal, ColorRole::redText}, parent}
{
    setWordWrap(true);
    hide();
}

void ErrorLine::setMessage(const QString &message)
{
    setText(message);
    setVisible(!message.isEmpty());
    // A notification would be announced again when the form around it is shown again.
    if (!message.isEmpty()) {
        announce(this, message);
    }
}

} // namespace quilmora
