#pragma once

#include <QAccessibleWidget>
#include <QHash>

namespace quilmora
{

class HistoryGrid;

/// What screen readers are told of the history grid: a list whose items are the tiles, each with its prompt
/// as name, that can be focused and pressed.
class HistoryGridAccessible final : public QAccessibleWidget
{
    Q_DISABLE_COPY_MOVE(HistoryGridAccessible)

public:
    explicit HistoryGridAccessible(HistoryGrid &grid);
    ~HistoryGridAccessible() override;

    /// Makes Qt use this class for history grids. May be called repeatedly.
    static void install();

    /// Says that the tile at `position` has got the keyboard focus.
    static void notifyFocus(HistoryGrid &grid, int position);

    int childCount() const override;
    QAccessibleInterface *child(int position) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;

private:
    HistoryGrid &grid;
    mutable QHash<int, QAccessible::Id> tiles; ///< Those that were asked for, by their positions.
};

} // namespace quilmora
