#include "screens/generate/DisclosureAccessible.h"

#include "screens/generate/DisclosureHeader.h"

#include <mutex>

namespace quilmora
{
namespace
{

QAccessibleInterface *makeAccessible(const QString & /*className*/, QObject *object)
{
    auto *header = qobject_cast<DisclosureHeader *>(object);
    return header != nullptr ? new DisclosureAccessible{*header} : nullptr;
}

} // namespace

DisclosureAccessible::DisclosureAccessible(DisclosureHeader &shown)
    : QAccessibleWidget{&shown, QAccessible::Button},
      header{shown}
{
}

void DisclosureAccessible::install()
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(makeAccessible); });
}

QAccessible::State DisclosureAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = header.isDown();
    state.expandable = true;
    state.expanded = header.isExpanded();
    state.collapsed = !header.isExpanded();
    return state;
}

QStringList DisclosureAccessible::actionNames() const
{
    return QStringList{pressAction()} + QAccessibleWidget::actionNames();
}

void DisclosureAccessible::doAction(const QString &name)
{
    if (name == pressAction()) {
        header.click();
    } else {
        QAccessibleWidget::doAction(name);
    }
}

} // namespace quilmora
