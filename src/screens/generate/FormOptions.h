#pragma once

#include "model/CoverInputs.h"
#include "ui/widgets/PaintedButton.h"

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
