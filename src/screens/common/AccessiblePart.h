#pragma once

#include <QAccessible>

class QString;
class QWidget;

namespace quilmora
{

/// The part that a widget plays for screen readers, where Qt could not know it.
struct AccessiblePart {
    QAccessible::Role role;
    bool busy = false; ///< At work, for an unknown time.
};

/// Gives a widget its part; to be called before it gets a name. Screen readers announce a widget whose part
/// is a notification, name and description, when it is shown. It must not contain what takes the focus:
/// screen readers repeat the name of a container when the focus enters it.
void setAccessiblePart(QWidget *widget, AccessiblePart part);

/// Lets screen readers say a notification that is in sight already, because its name has changed.
void announceAgain(QWidget *notification);

/// Lets screen readers announce a text, whether it is visible or not. `source` is any widget of the window.
void announce(QWidget *source, const QString &text);

} // namespace quilmora
