#pragma once

#include "model/CoverSize.h"
#include "ui/widgets/OptionButton.h"

namespace quilmora {

/// The button of one cover size.
class SizeCard final : public OptionButton
{
    Q_OBJECT

public:
    explicit SizeCard(const CoverSize &size, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paint(QPainter &painter) override;

private:
    const CoverSize m_coverSize;
};

} // namespace quilmora
