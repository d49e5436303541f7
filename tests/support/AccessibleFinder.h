#pragma once

#include <QAccessible>
#include <QStringList>
#include <QWidget>

/// Finds the pieces of a window as a screen reader does: by the names on the accessibility interface.
namespace quilmora::test::accessible {

/// The interface of a widget; the test program ends when it has none.
QAccessibleInterface *interfaceOf(QWidget *widget);

/// The visible widgets of that name below `root`, `root` included, in the order of the accessibility tree.
QList<QWidget *> allNamed(QWidget *root, const QString &name);

/// The first visible widget of that name into which text is typed; null when there is none.
QWidget *findField(QWidget *root, const QString &name);

/// The names of all visible widgets below `root` in the order of the accessibility tree, without empty ones.
QStringList names(QWidget *root);

/// The names of the visible widgets that take the keyboard focus, in the order of the Tab key.
QStringList focusOrder(QWidget *root);

/// The first visible widget of that name and class below `root`; null when there is none.
template <typename Widget = QWidget>
Widget *find(QWidget *root, const QString &name)
{
    for (QWidget *widget : allNamed(root, name)) {
        if (auto *match = qobject_cast<Widget *>(widget)) {
            return match;
        }
    }
    return nullptr;
}

} // namespace quilmora::test::accessible
