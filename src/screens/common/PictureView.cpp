#include "screens/common/PictureView.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"

#include <QPainter>

namespace quilmora
{

PictureView::PictureView(const QImage &image, const QString &accessibleName, const Look &theLook,
                         QWidget *parent)
    : QWidget{parent},
      look{theLook},
      picture{theLook.cornerRadius}
{
    picture.setImage(image);
    setAccessiblePart(this, {QAccessible::Graphic});
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void PictureView::setBox(QSize box)
{
    look.box = box;
    updateGeometry();
}

QSize PictureView::sizeHint() const
{
    return picture.fittedSize(look.box);
}

QRect PictureView::pictureBounds() const
{
    // Fitted a second time into its own size it could come out a pixel smaller.
    QRect bounds{{0, 0}, size() == sizeHint() ? size() : picture.fittedSize(size())};
    bounds.moveCenter(rect().center());
    return bounds;
}

QPainterPath PictureView::outline() const
{
    return roundedRect(pictureBounds(), look.cornerRadius);
}

void PictureView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    const QRect bounds = pictureBounds();
    painter.drawPixmap(PixelGrid{painter}.aligned(bounds.topLeft()),
                       picture.pixmap(bounds.size(), devicePixelRatioF()));
}

} // namespace quilmora
