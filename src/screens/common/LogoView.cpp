#include "screens/common/LogoView.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/PixelGrid.h"

#include <QPainter>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{

LogoView::LogoView(int frameSide, double radius, QWidget *parent, LogoFiles theFiles)
    : QWidget{parent},
      side{frameSide},
      cornerRadius{radius},
      files{std::move(theFiles)}
{
    setAccessiblePart(this, {QAccessible::Graphic});
    setAccessibleName(u"Quilmora"_s);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LogoView::paintEvent(QPaintEvent * /*event*/)
{
    if (logo.devicePixelRatio() != devicePixelRatioF() || logo.isNull()) {
        logo = logoPixmap(side, cornerRadius, devicePixelRatioF(), files.resourceFolders, files.assetPath);
    }
    QPainter painter{this};
    painter.drawPixmap(PixelGrid{painter}.aligned(QPointF{0, 0}), logo);
}

} // namespace quilmora
