#pragma once

#include <QAccessible>
#include <QPointer>

namespace quilmora
{

class HistoryGrid;

/// One tile of the history grid on the accessibility bus.
class HistoryTileAccessible final : public QAccessibleInterface, public QAccessibleActionInterface
{
    Q_DISABLE_COPY_MOVE(HistoryTileAccessible)

public:
    HistoryTileAccessible(HistoryGrid &grid, int position);
    ~HistoryTileAccessible() override = default;

    int position() const { return index; }

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QWindow *window() const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }

    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}
    QRect rect() const override;

    void *interface_cast(QAccessible::InterfaceType type) override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString & /*name*/) const override { return {}; }

private:
    const QPointer<HistoryGrid> grid;
    const int index;
};

} // namespace quilmora
