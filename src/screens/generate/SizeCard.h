#pragma once

#include "model/CoverSize.h"
#include "screens/common/OptionButton.h"

namespace quilmora
{

/// One cover size to choose.
class SizeCard final : public OptionButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SizeCard)

public:
    explicit SizeCard(const CoverSize &size, QWidget *parent = nullptr);
    ~SizeCard() override = default;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const CoverSize coverSize;
};

} // namespace quilmora
