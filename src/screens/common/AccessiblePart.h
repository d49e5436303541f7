#pragma once

#include <QAccessible>

class QWidget;

namespace quilmora
{

/// The part that a widget plays for screen readers, where the toolkit could not know it.
struct AccessiblePart {
    QAccessible::Role role;
    bool busy = false; ///< At work, for an unknown time.
};

/// Gives a widget its part; to be called before it gets a name. A widget whose part is a notification is said
/// by screen readers when it comes into sight.
void setAccessiblePart(QWidget *widget, AccessiblePart part);

/// Lets screen readers say a notification that is in sight already, because its name has changed.
void announceAgain(QWidget *notification);

} // namespace quilmora
