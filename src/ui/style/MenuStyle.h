#pragma once

#include <QProxyStyle>
#include <QWidget>

namespace quilmora {

/// The shadow of an open menu, drawn by a child of the window below it: the menu's own window is no larger
/// than the menu. Deleted with the menu.
class MenuShadow final : public QWidget
{
    Q_OBJECT

public:
    MenuShadow(QWidget &menu, QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect menuPlace() const;
    void follow();

    QWidget &m_menu;
};

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
