#include "screens/common/NotificationLabel.h"

#include "screens/common/AccessiblePart.h"

namespace quilmora
{

NotificationLabel::NotificationLabel(const QString &text, const QString &description, Style style,
                                     QWidget *parent)
    : TextLabel{{}, style, parent}
{
    setAccessiblePart(this, {QAccessible::Notification});
    // Not earlier: setting the text creates the accessible interface.
    setText(text);
    setAccessibleName(text);
    setAccessibleDescription(description);
}

} // namespace quilmora
