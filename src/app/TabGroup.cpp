#include "app/TabGroup.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int spacing = 4;
constexpr int padding = 4;
constexpr double cornerRadius = 10;

} // namespace

TabGroup::TabGroup(QWidget *parent) : QWidget{parent}
{
    setAccessiblePart(this, {QAccessible::Grouping});
    setAccessibleName(u"导航"_s);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout{this};
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(spacing);
}

void TabGroup::keyPressEvent(QKeyEvent *event)
{
    const bool forward = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down;
    const bool backward = event->key() == Qt::Key_Left || event->key() == Qt::Key_Up;
    const int next = layout()->indexOf(focusWidget()) + (forward ? 1 : -1);
    if (QLayoutItem *item = layout()->itemAt(next); item != nullptr && (forward || backward)) {
        item->widget()->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void TabGroup::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRoundedRect(PixelGrid{painter}.aligned(rect()), cornerRadius),
                     themeColor(ColorRole::controlBackground));
}

} // namespace quilmora
