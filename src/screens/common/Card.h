#pragma once

#include <QWidget>

namespace quilmora
{

/// A panel on the control background colour with rounded corners.
class Card final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Card)

public:
    using QWidget::QWidget;
    ~Card() override = default;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
