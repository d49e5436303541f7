#pragma once

#include "screens/common/PaintedButton.h"
#include "screens/common/ShadowGround.h"
#include "screens/common/Symbol.h"

namespace quilmora
{

/// A capsule on the accent gradient with a symbol and a title. Its shadow shows when it lies on a
/// ShadowGround.
class GradientButton final : public PaintedButton, public ShadowCaster
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GradientButton)

public:
    /// `shadowOpacity` from 0 to 1; screens differ in it.
    GradientButton(const QString &iconName, const QString &title, double shadowOpacity,
                   QWidget *parent = nullptr);
    ~GradientButton() override = default;

    Shadow shadow() const override;
    QPainterPath outline() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    const Symbol symbol;
    const double shadowOpacity;
};

} // namespace quilmora
