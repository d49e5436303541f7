#include "screens/history/HistoryGridAccessible.h"

#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryTileAccessible.h"

#include <mutex>

namespace quilmora
{
namespace
{

QAccessibleInterface *makeAccessible(const QString & /*className*/, QObject *object)
{
    auto *grid = qobject_cast<HistoryGrid *>(object);
    return grid != nullptr ? new HistoryGridAccessible{*grid} : nullptr;
}

} // namespace

HistoryGridAccessible::HistoryGridAccessible(HistoryGrid &shown)
    : QAccessibleWidget{&shown, QAccessible::List},
      grid{shown}
{
}

HistoryGridAccessible::~HistoryGridAccessible()
{
    for (const QAccessible::Id id : std::as_const(tiles)) {
        QAccessible::deleteAccessibleInterface(id);
    }
}

void HistoryGridAccessible::install()
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(makeAccessible); });
}

void HistoryGridAccessible::notifyFocus(HistoryGrid &grid, int position)
{
    QAccessibleEvent event{&grid, QAccessible::Focus};
    event.setChild(position);
    QAccessible::updateAccessibility(&event);
}

int HistoryGridAccessible::childCount() const
{
    return grid.model()->rowCount();
}

QAccessibleInterface *HistoryGridAccessible::child(int position) const
{
    if (position < 0 || position >= childCount()) {
        return nullptr;
    }
    auto known = tiles.constFind(position);
    if (known == tiles.constEnd()) {
        auto *tile = new HistoryTileAccessible{grid, position};
        tiles.insert(position, QAccessible::registerAccessibleInterface(tile));
        known = tiles.constFind(position);
    }
    return QAccessible::accessibleInterface(*known);
}

int HistoryGridAccessible::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *tile = dynamic_cast<const HistoryTileAccessible *>(child);
    return tile != nullptr ? tile->position() : -1;
}

QAccessibleInterface *HistoryGridAccessible::childAt(int x, int y) const
{
    const QModelIndex index = grid.indexAt(grid.viewport()->mapFromGlobal(QPoint{x, y}));
    return index.isValid() ? child(index.row()) : nullptr;
}

QAccessibleInterface *HistoryGridAccessible::focusChild() const
{
    return grid.hasFocus() && grid.currentIndex().isValid() ? child(grid.currentIndex().row()) : nullptr;
}

} // namespace quilmora
