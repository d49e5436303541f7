#pragma once

#include "screens/common/OptionButton.h"

namespace quilmora
{

/// One facial expression to choose.
class EmotionChip final : public OptionButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(EmotionChip)

public:
    explicit EmotionChip(const QString &name, QWidget *parent = nullptr);
    ~EmotionChip() override = default;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QString name;
};

} // namespace quilmora
