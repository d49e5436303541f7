#pragma once

#include "screens/common/PaintedButton.h"

namespace quilmora
{

/// The wide button that starts a generation.
class GenerateButton final : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GenerateButton)

public:
    explicit GenerateButton(QWidget *parent = nullptr);
    ~GenerateButton() override = default;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
