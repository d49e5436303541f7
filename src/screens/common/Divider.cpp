#include "screens/common/Divider.h"

#include "screens/common/Theme.h"

#include <QPainter>

namespace quilmora
{

Divider::Divider(QWidget *parent) : QWidget{parent}
{
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.fillRect(rect(), themeColor(ColorRole::separator));
}

} // namespace quilmora
