#pragma once

#include "screens/common/MenuStyle.h"

namespace quilmora
{

/// How Qt's own controls are drawn: fields, push buttons of panels, scroll bars and
/// menus in the application's look. Not used on macOS, whose own style is right already.
class ControlStyle final : public MenuStyle
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ControlStyle)

public:
    ControlStyle() = default;
    ~ControlStyle() override = default;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl subControl,
                         const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
};

} // namespace quilmora
