#pragma once

#include <QAccessible>

#include <mutex>

class QLayout;
class QString;
class QWidget;

namespace quilmora {

/// What a widget is to screen readers, where Qt cannot know it.
struct AccessibleRole {
    QAccessible::Role role;
    bool busy = false; ///< Of a progress indicator without a value.
};

/// To be called before the widget gets an accessible name. Screen readers announce name and description of a
/// notification when it is shown. It must not contain a widget that takes the focus: screen readers repeat
/// the name of a container when the focus enters it.
void setAccessibleRole(QWidget *widget, AccessibleRole role);

/// Lets screen readers announce a visible notification again after its name has changed.
void announceAgain(QWidget *notification);

/// Lets screen readers announce a text, whether it is visible or not. `source` is any widget of the window.
void announce(QWidget *source, const QString &text);

/// Lets screen readers read the widgets of a complete layout in its order instead of that of their creation.
/// The tab order stays.
void readInLayoutOrder(const QLayout &layout);

/// Makes Qt use `Interface` for every `Widget`. May be called repeatedly.
template <typename Widget, typename Interface>
void installAccessibleInterface()
{
    static std::once_flag installed;
    std::call_once(installed, [] {
        QAccessible::installFactory([](const QString & /*className*/, QObject *object) {
            auto *widget = qobject_cast<Widget *>(object);
            return widget != nullptr ? static_cast<QAccessibleInterface *>(new Interface{*widget}) : nullptr;
        });
    });
}

} // namespace quilmora
