#pragma once

#include "ui/theme/Symbol.h"
#include "ui/widgets/PaintedButton.h"
#include "ui/widgets/ShadowHost.h"

namespace quilmora {

/// A capsule on the accent gradient with a symbol and a title. A ShadowHost as parent draws its shadow.
class GradientButton final : public PaintedButton, public ShadowSource
{
    Q_OBJECT

public:
    /// `shadowOpacity` from 0 to 1.
    GradientButton(const QString &iconName, const QString &title, double shadowOpacity,
                   QWidget *parent = nullptr);

    Shadow shadow() const override;
    QPainterPath outline() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override;
    void paint(QPainter &painter) override;

private:
    const Symbol m_symbol;
    const double m_shadowOpacity;
};

} // namespace quilmora
