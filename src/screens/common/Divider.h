#pragma once

#include <QWidget>

namespace quilmora
{

/// A thin horizontal line between two parts of a window.
class Divider final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Divider)

public:
    explicit Divider(QWidget *parent = nullptr);
    ~Divider() override = default;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
