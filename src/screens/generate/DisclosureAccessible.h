#pragma once

#include <QAccessibleWidget>

namespace quilmora
{

class DisclosureHeader;

/// What screen readers are told of a DisclosureHeader: a button that can be pressed, and whether what it
/// opens is open.
class DisclosureAccessible final : public QAccessibleWidget
{
    Q_DISABLE_COPY_MOVE(DisclosureAccessible)

public:
    explicit DisclosureAccessible(DisclosureHeader &header);

    /// Makes Qt use this class for such headers. May be called repeatedly.
    static void install();

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

protected:
    ~DisclosureAccessible() override = default;

private:
    DisclosureHeader &header;
};

} // namespace quilmora
