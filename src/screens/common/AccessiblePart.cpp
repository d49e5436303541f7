#include "screens/common/AccessiblePart.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QVariant>
#include <QWidget>

#include <mutex>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr auto roleProperty = "accessibleRole";
constexpr auto busyProperty = "accessibleBusy";

class PartAccessible final : public QAccessibleWidget
{
public:
    PartAccessible(QWidget *widget, QAccessible::Role role) : QAccessibleWidget{widget, role} {}
    Q_DISABLE_COPY_MOVE(PartAccessible)

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = object()->property(busyProperty).toBool();
        // Not when it only hands the focus on to one of its children.
        state.focused = object() == QApplication::focusWidget();
        state.modal = role() == QAccessible::Dialog;
        return state;
    }

protected:
    ~PartAccessible() override = default;
};

QAccessibleInterface *makeAccessible(const QString & /*className*/, QObject *object)
{
    const QVariant role = object->property(roleProperty);
    auto *widget = qobject_cast<QWidget *>(object);
    return widget != nullptr && role.isValid()
               ? new PartAccessible{widget, static_cast<QAccessible::Role>(role.toInt())}
               : nullptr;
}

} // namespace

void setAccessiblePart(QWidget *widget, AccessiblePart part)
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(makeAccessible); });
    widget->setProperty(roleProperty, static_cast<int>(part.role));
    widget->setProperty(busyProperty, part.busy);
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
        // Stays hidden, so that screen readers do not come across it when they read the window.
        notification = new QWidget;
        setAccessiblePart(notification, {QAccessible::Notification});
        // Not earlier: newer versions of Qt make the accessible interface as soon as a window that is shown
        // has a new child, and keep it.
        notification->setParent(window);
        notification->setObjectName(objectName);
    }
    notification->setAccessibleName(text);
    announceAgain(notification);
}

} // namespace quilmora
