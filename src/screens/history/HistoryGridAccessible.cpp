#include "screens/history/HistoryGridAccessible.h"

#include "screens/history/HistoryGrid.h"
#include "ui/accessibility/Accessibility.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace quilmora {
namespace {

/// One tile. Its position may disappear while screen readers keep the interface.
class TileAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    TileAccessible(HistoryGrid &grid, int position) : m_grid{&grid}, m_position{position} {}

    int position() const { return m_position; }

    bool isValid() const override { return m_grid != nullptr && m_position < m_grid->model()->rowCount(); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return isValid() ? m_grid->window()->windowHandle() : nullptr; }
    QAccessibleInterface *parent() const override
    {
        return m_grid != nullptr ? QAccessible::queryAccessibleInterface(m_grid.data()) : nullptr;
    }
    QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }

    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}
    QRect rect() const override;

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }

private:
    QModelIndex index() const { return m_grid->model()->index(m_position, 0); }

    const QPointer<HistoryGrid> m_grid;
    const int m_position;
};

QAccessible::State TileAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.focusable = true;
    state.focused = m_grid->hasFocus() && m_grid->currentIndex().row() == m_position;
    state.invisible = !m_grid->isVisible();
    state.offscreen = !m_grid->viewport()->rect().intersects(m_grid->visualRect(index()));
    return state;
}

QString TileAccessible::text(QAccessible::Text kind) const
{
    if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description)) {
        return {};
    }
    const int role = kind == QAccessible::Name ? Qt::AccessibleTextRole : Qt::AccessibleDescriptionRole;
    return index().data(role).toString();
}

QRect TileAccessible::rect() const
{
    if (!isValid()) {
        return {};
    }
    const QRect tile = m_grid->visualRect(index());
    return {m_grid->viewport()->mapToGlobal(tile.topLeft()), tile.size()};
}

void TileAccessible::doAction(const QString &name)
{
    if (!isValid()) {
        return;
    }
    m_grid->setFocus();
    m_grid->setCurrentIndex(index());
    if (name == pressAction()) {
        Q_EMIT m_grid->opened(m_position);
    }
}

class GridAccessible final : public QAccessibleWidget
{
public:
    explicit GridAccessible(HistoryGrid &grid) : QAccessibleWidget{&grid, QAccessible::List}, m_grid{grid} {}
    Q_DISABLE_COPY_MOVE(GridAccessible)
    ~GridAccessible() override
    {
        for (const QAccessible::Id id : std::as_const(m_tiles)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    int childCount() const override { return m_grid.model()->rowCount(); }
    QAccessibleInterface *child(int position) const override;
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        const auto *tile = dynamic_cast<const TileAccessible *>(child);
        return tile != nullptr ? tile->position() : -1;
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        return child(m_grid.indexAt(m_grid.viewport()->mapFromGlobal(QPoint{x, y})).row());
    }
    QAccessibleInterface *focusChild() const override
    {
        return m_grid.hasFocus() ? child(m_grid.currentIndex().row()) : nullptr;
    }

private:
    HistoryGrid &m_grid;
    mutable QHash<int, QAccessible::Id> m_tiles; ///< By position, as far as they were asked for.
};

QAccessibleInterface *GridAccessible::child(int position) const
{
    if (position < 0 || position >= childCount()) {
        return nullptr;
    }
    auto known = m_tiles.constFind(position);
    if (known == m_tiles.constEnd()) {
        auto *tile = new TileAccessible{m_grid, position};
        m_tiles.insert(position, QAccessible::registerAccessibleInterface(tile));
        known = m_tiles.constFind(position);
    }
    return QAccessible::accessibleInterface(*known);
}

} // namespace

void historyGridAccessible::install() { installAccessibleInterface<HistoryGrid, GridAccessible>(); }

void historyGridAccessible::notifyFocus(HistoryGrid &grid, int position)
{
    QAccessibleEvent event{&grid, QAccessible::Focus};
    event.setChild(position);
    QAccessible::updateAccessibility(&event);
}

} // namespace quilmora
