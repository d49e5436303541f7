#include "support/AccessibleFinder.h"

#include <algorithm>

namespace quilmora::test::accessible {
namespace {

/// Calls `visit` for every visible widget in the tree below `node`, `node` first.
template <typename Visit>
void walk(QAccessibleInterface *node, const Visit &visit)
{
    if (node == nullptr || node->state().invisible) {
        return;
    }
    if (auto *widget = qobject_cast<QWidget *>(node->object()); widget != nullptr && widget->isVisible()) {
        visit(widget, node->text(QAccessible::Name));
    }
    for (int i = 0; i < node->childCount(); ++i) {
        walk(node->child(i), visit);
    }
}

} // namespace

QAccessibleInterface *interfaceOf(QWidget *widget)
{
    QAccessibleInterface *found = QAccessible::queryAccessibleInterface(widget);
    if (found == nullptr) {
        qFatal("No accessibility interface");
    }
    return found;
}

QList<QWidget *> allNamed(QWidget *root, const QString &name)
{
    QList<QWidget *> found;
    walk(interfaceOf(root), [&](QWidget *widget, const QString &widgetName) {
        if (widgetName == name) {
            found.append(widget);
        }
    });
    return found;
}

QWidget *findField(QWidget *root, const QString &name)
{
    const QList<QWidget *> widgets = allNamed(root, name);
    const auto field = std::find_if(widgets.begin(), widgets.end(), [](const QWidget *widget) {
        return widget->testAttribute(Qt::WA_InputMethodEnabled);
    });
    return field != widgets.end() ? *field : nullptr;
}

QStringList names(QWidget *root)
{
    QStringList found;
    walk(interfaceOf(root), [&](QWidget *, const QString &name) {
        if (!name.isEmpty()) {
            found.append(name);
        }
    });
    return found;
}

QStringList focusOrder(QWidget *root)
{
    QStringList order;
    for (QWidget *widget = root->nextInFocusChain(); widget != root; widget = widget->nextInFocusChain()) {
        const bool takesFocus = (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
                                widget->focusProxy() == nullptr && widget->isEnabled();
        if (takesFocus && widget->isVisibleTo(root)) {
            order.append(interfaceOf(widget)->text(QAccessible::Name));
        }
    }
    return order;
}

} // namespace quilmora::test::accessible
