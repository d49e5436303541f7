#include "screens/history/HistoryTileAccessible.h"

#include "screens/history/HistoryGrid.h"

namespace quilmora
{
namespace
{

QModelIndex modelIndex(const HistoryGrid &grid, int position)
{
    return grid.model()->index(position, 0);
}

} // namespace

HistoryTileAccessible::HistoryTileAccessible(HistoryGrid &shownIn, int position)
    : grid{&shownIn},
      index{position}
{
}

bool HistoryTileAccessible::isValid() const
{
    return grid != nullptr && index < grid->model()->rowCount();
}

QWindow *HistoryTileAccessible::window() const
{
    return isValid() ? grid->window()->windowHandle() : nullptr;
}

QAccessibleInterface *HistoryTileAccessible::parent() const
{
    return grid != nullptr ? QAccessible::queryAccessibleInterface(grid.data()) : nullptr;
}

QAccessible::State HistoryTileAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.focusable = true;
    state.focused = grid->hasFocus() && grid->currentIndex().row() == index;
    state.invisible = !grid->isVisible();
    state.offscreen = !grid->viewport()->rect().intersects(grid->visualRect(modelIndex(*grid, index)));
    return state;
}

QString HistoryTileAccessible::text(QAccessible::Text kind) const
{
    if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description)) {
        return {};
    }
    const int role = kind == QAccessible::Name ? Qt::AccessibleTextRole : Qt::AccessibleDescriptionRole;
    return modelIndex(*grid, index).data(role).toString();
}

QRect HistoryTileAccessible::rect() const
{
    if (!isValid()) {
        return {};
    }
    const QRect tile = grid->visualRect(modelIndex(*grid, index));
    return {grid->viewport()->mapToGlobal(tile.topLeft()), tile.size()};
}

void *HistoryTileAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList HistoryTileAccessible::actionNames() const
{
    return {pressAction(), setFocusAction()};
}

void HistoryTileAccessible::doAction(const QString &name)
{
    if (!isValid()) {
        return;
    }
    grid->setFocus();
    grid->setCurrentIndex(modelIndex(*grid, index));
    if (name == pressAction()) {
        Q_EMIT grid->opened(index);
    }
}

} // namespace quilmora
