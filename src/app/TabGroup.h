#pragma once

#include <QWidget>

namespace quilmora
{

/// The ground on which the tab buttons lie, in a row.
class TabGroup final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TabGroup)

public:
    explicit TabGroup(QWidget *parent = nullptr);
    ~TabGroup() override = default;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
