#pragma once

#include <QProxyStyle>

namespace quilmora
{

/// How menus are drawn: as light panels with round corners, without the letters that select a command by
/// keyboard and without icons.
class MenuStyle : public QProxyStyle
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MenuStyle)

public:
    MenuStyle();
    ~MenuStyle() override = default;

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
