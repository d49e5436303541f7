#include "ui/widgets/ErrorLine.h"

#include "ui/accessibility/Accessibility.h"

namespace quilmora {

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
