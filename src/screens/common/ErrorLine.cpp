#include "screens/common/ErrorLine.h"

#include "screens/common/AccessiblePart.h"

namespace quilmora
{

ErrorLine::ErrorLine(int pixelSize, QWidget *parent)
    : TextLabel{{}, {pixelSize, QFont::Normal, ColorRole::red}, parent}
{
    setAccessiblePart(this, {QAccessible::Notification});
    setWordWrap(true);
    hide();
}

void ErrorLine::setMessage(const QString &message)
{
    const bool wasVisible = isVisible();
    setText(message);
    setAccessibleName(message);
    setVisible(!message.isEmpty());
    if (wasVisible && isVisible()) {
        announceAgain(this);
    }
}

} // namespace quilmora
