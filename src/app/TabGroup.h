#pragma once

#include <QWidget>

namespace quilmora
{

/// The ground on which the tab buttons lie, in a row. The arrow keys move the focus along it.
class TabGroup final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TabGroup)

public:
    explicit TabGroup(QWidget *parent = nullptr);
    ~TabGroup() override = default;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
