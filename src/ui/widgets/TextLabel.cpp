#include "ui/widgets/TextLabel.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Fonts.h"

#include <QEvent>

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

} // namespace quilmora
