#include "screens/common/MenuShadow.h"

#include "screens/common/Shadow.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"
#include "screens/common/WindowGround.h"

#include <QEvent>
#include <QPainter>

namespace quilmora
{
namespace
{

Shadow menuShadow()
{
    constexpr double blurRadius = 12;
    constexpr QPointF offset{0, 4};
    return {themeColor(ColorRole::sheetShadow), blurRadius, offset};
}

} // namespace

MenuShadow::MenuShadow(QWidget &shown, QWidget *window) : QWidget{window}, menu{shown}
{
    hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    menu.installEventFilter(this);
    connect(&menu, &QObject::destroyed, this, &QObject::deleteLater);
}

QRect MenuShadow::menuPlace() const
{
    return {parentWidget()->mapFromGlobal(menu.geometry().topLeft()), menu.size()};
}

void MenuShadow::follow()
{
    const Shadow shadow = menuShadow();
    const int reach = shadow.reach();
    const QRect place = menuPlace().adjusted(-reach, -reach, reach, reach);
    setGeometry(place.translated(shadow.offset.toPoint()) & parentWidget()->rect());
    raise();
    setVisible(menu.isVisible());
    update();
}

bool MenuShadow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
        follow();
        break;
    case QEvent::Hide:
        hide();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void MenuShadow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.translate(-pos());
    menuShadow().draw(painter, roundedRect(menuPlace(), windowGround::menuRadius));
}

} // namespace quilmora
