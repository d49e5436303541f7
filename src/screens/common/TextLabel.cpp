#include "screens/common/TextLabel.h"

#include "screens/common/Fonts.h"

#include <QEvent>

namespace quilmora
{

TextLabel::TextLabel(const QString &text, Style style, QWidget *parent)
    : QLabel{parent},
      colorRole{style.color}
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
    const QColor color = themeColor(colorRole);
    if (palette().color(QPalette::WindowText) != color) {
        QPalette changed = palette();
        changed.setColor(QPalette::WindowText, color);
        setPalette(changed);
    }
}

} // namespace quilmora
