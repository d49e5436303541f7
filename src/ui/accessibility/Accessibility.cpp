#include "ui/accessibility/Accessibility.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QLayout>
#include <QVariant>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr auto roleProperty = "accessibleRole";
constexpr auto busyProperty = "accessibleBusy";

class RoleAccessible final : public QAccessibleWidget
{
public:
    RoleAccessible(QWidget *widget, QAccessible::Role role) : QAccessibleWidget{widget, role} {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = object()->property(busyProperty).toBool();
        // QAccessibleWidget also reports the focus of a focus proxy.
        state.focused = object() == QApplication::focusWidget();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }
};

QAccessibleInterface *makeAccessible(const QString & /*className*/, QObject *object)
{
    const QVariant role = object->property(roleProperty);
    auto *widget = qobject_cast<QWidget *>(object);
    return widget != nullptr && role.isValid()
               ? new RoleAccessible{widget, static_cast<QAccessible::Role>(role.toInt())}
               : nullptr;
}

} // namespace

void setAccessibleRole(QWidget *widget, AccessibleRole role)
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(makeAccessible); });
    widget->setProperty(roleProperty, static_cast<int>(role.role));
    widget->setProperty(busyProperty, role.busy);
}

void announceAgain(QWidget *notification)
{
    QAccessibleEvent event{notification, QAccessible::ObjectShow};
    QAccessible::updateAccessibility(&event);
}

void announce(QWidget *source, const QString &text)
{
    const QString objectName = u"announcement"_s;
    QWidget *window = source->window();
    auto *notification = window->findChild<QWidget *>(objectName, Qt::FindDirectChildrenOnly);
    if (notification == nullptr) {
        // Stays hidden, so that screen readers do not find it when they read the window.
        notification = new QWidget;
        setAccessibleRole(notification, {QAccessible::Notification});
        // Only now: newer versions of Qt create the accessible interface, and keep it, when a visible window
        // gets a child.
        notification->setParent(window);
        notification->setObjectName(objectName);
    }
    notification->setAccessibleName(text);
    announceAgain(notification);
}

void readInLayoutOrder(const QLayout &layout)
{
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem *item = layout.itemAt(index);
        if (QWidget *widget = item->widget(); widget != nullptr) {
            // Screen readers see children from the lowest to the highest.
            widget->raise();
        } else if (const QLayout *inner = item->layout(); inner != nullptr) {
            readInLayoutOrder(*inner);
        }
    }
}

} // namespace quilmora
