#include "screens/common/ReadingOrder.h"

#include <QLayout>
#include <QWidget>

namespace quilmora
{

void readInLayoutOrder(const QLayout &layout)
{
    for (int index = 0; index < layout.count(); ++index) {
        QLayoutItem *item = layout.itemAt(index);
        if (QWidget *widget = item->widget(); widget != nullptr) {
            // Screen readers see children from the lowest to the highest.
            widget->raise();
        } else if (const QLayout *inner = item->layout(); inner != nullptr) {
            readInLayoutOrder(*inner);
        }
    }
}

} // namespace quilmora
