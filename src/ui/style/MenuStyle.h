#pragma once

#include <QProxyStyle>

namespace quilmora {

/// Draws menus with round corners, without mnemonics and without icons.
class MenuStyle : public QProxyStyle
{
    Q_OBJECT

public:
    MenuStyle();

    using QProxyStyle::polish;
    void polish(QWidget *widget) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
};

} // namespace quilmora
