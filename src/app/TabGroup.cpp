#include "app/TabGroup.h"

#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QHBoxLayout>
#include <QPainter>

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
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout{this};
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(spacing);
}

void TabGroup::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRoundedRect(PixelGrid{painter}.aligned(rect()), cornerRadius),
                     themeColor(ColorRole::controlBackground));
}

} // namespace quilmora
