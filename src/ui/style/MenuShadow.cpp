#include "ui/style/MenuShadow.h"

#include "ui/theme/Measures.h"
#include "ui/theme/Shadow.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QEvent>
#include <QPainter>

namespace quilmora {
namespace {

Shadow menuShadow()
{
    constexpr double blurRadius = 12;
    constexpr QPointF offset{0, 4};
    return {themeColor(ColorRole::sheetShadow), blurRadius, offset};
}

} // namespace

MenuShadow::MenuShadow(QWidget &shown, QWidget *window) : QWidget{window}, m_menu{shown}
{
    hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_menu.installEventFilter(this);
    connect(&m_menu, &QObject::destroyed, this, &QObject::deleteLater);
}

QRect MenuShadow::menuPlace() const
{
    return {parentWidget()->mapFromGlobal(m_menu.geometry().topLeft()), m_menu.size()};
}

void MenuShadow::follow()
{
    const Shadow shadow = menuShadow();
    const int reach = shadow.reach();
    const QRect place = menuPlace().adjusted(-reach, -reach, reach, reach);
    setGeometry(place.translated(shadow.offset.toPoint()) & parentWidget()->rect());
    raise();
    setVisible(m_menu.isVisible());
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
    menuShadow().draw(painter, roundedRect(menuPlace(), measures::controlRadius));
}

} // namespace quilmora
