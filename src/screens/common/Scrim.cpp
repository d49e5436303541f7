#include "screens/common/Scrim.h"

#include "screens/common/Sheet.h"
#include "screens/common/Theme.h"

#include <QEvent>
#include <QPainter>

namespace quilmora
{

Scrim::Scrim(const Sheet &sheet) : QWidget{sheet.parentWidget()->window()}
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(parentWidget()->rect());
    parentWidget()->installEventFilter(this);
    connect(&sheet, &Sheet::finished, this, &Scrim::hide);
    connect(&sheet, &Sheet::destroyed, this, &Scrim::deleteLater);
    raise();
    show();
}

bool Scrim::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

void Scrim::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.fillRect(rect(), themeColor(ColorRole::scrim));
}

} // namespace quilmora
