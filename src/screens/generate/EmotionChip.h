#pragma once

#include "ui/widgets/OptionButton.h"

namespace quilmora {

/// The button of one facial expression.
class EmotionChip final : public OptionButton
{
    Q_OBJECT

public:
    explicit EmotionChip(const QString &name, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paint(QPainter &painter) override;

private:
    const QString m_name;
};

} // namespace quilmora
