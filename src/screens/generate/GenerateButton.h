#pragma once

#include "ui/widgets/PaintedButton.h"

namespace quilmora {

/// The wide button that starts a generation.
class GenerateButton final : public PaintedButton
{
    Q_OBJECT

public:
    explicit GenerateButton(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paint(QPainter &painter) override;
};

} // namespace quilmora
