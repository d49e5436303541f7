#include "screens/common/LogoView.h"

#include "screens/common/LogoImage.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace quilmora
{

LogoView::LogoView(int frameSide, double radius, QWidget *parent)
    : QWidget{parent},
      side{frameSide},
      cornerRadius{radius}
{
    setAccessibleName(u"Quilmora"_s);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LogoView::paintEvent(QPaintEvent * /*event*/)
{
    if (logo.devicePixelRatio() != devicePixelRatioF() || logo.isNull()) {
        logo = logoPixmap(side, cornerRadius, devicePixelRatioF(), applicationResourceFolders());
    }
    QPainter painter{this};
    painter.drawPixmap(0, 0, logo);
}

} // namespace quilmora
