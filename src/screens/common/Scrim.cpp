#include "screens/common/Scrim.h"

#include "screens/common/Shadow.h"
#include "screens/common/Shapes.h"
#include "screens/common/Sheet.h"
#include "screens/common/Theme.h"

#include <QEvent>
#include <QPainter>

namespace quilmora
{

Scrim::Scrim(const Sheet &sheet)
    : QWidget{sheet.parentWidget()->window()},
      placeOfSheet{parentWidget()->mapFromGlobal(sheet.pos()), sheet.size()}
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
    constexpr double blurRadius = 24;
    constexpr QPointF offset{0, 8};
    QPainter painter{this};
    painter.fillRect(rect(), themeColor(ColorRole::scrim));
    // Below a large sheet most of the shadow would be drawn for nobody.
    constexpr int corner = static_cast<int>(Sheet::cornerRadius);
    painter.setClipRegion(QRegion{rect()} - placeOfSheet.adjusted(corner, corner, -corner, -corner));
    const Shadow shadow{themeColor(ColorRole::sheetShadow), blurRadius, offset};
    shadow.draw(painter, roundedRect(placeOfSheet, Sheet::cornerRadius));
}

} // namespace quilmora
