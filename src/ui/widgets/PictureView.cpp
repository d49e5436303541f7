#include "ui/widgets/PictureView.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"

#include <QPainter>

namespace quilmora {

void ScaledPicture::setImage(const QImage &image)
{
    m_image = image;
    m_scaled = {};
}

QSize ScaledPicture::fittedSize(QSize box) const
{
    return m_image.isNull() ? QSize{} : m_image.size().scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1});
}

const QPixmap &ScaledPicture::pixmap(QSize size, double devicePixelRatio)
{
    const QSize pixels = (QSizeF{size} * devicePixelRatio).toSize();
    if (!m_image.isNull() && (m_scaled.size() != pixels || m_scaled.devicePixelRatio() != devicePixelRatio)) {
        m_scaled = cutPixmap(m_image, pixels, roundedRect(QRectF{{}, pixels}, m_radius * devicePixelRatio),
                             devicePixelRatio);
    }
    return m_scaled;
}

PictureView::PictureView(const QImage &image, const QString &accessibleName, const Look &look,
                         QWidget *parent)
    : QWidget{parent},
      m_look{look},
      m_picture{look.cornerRadius}
{
    m_picture.setImage(image);
    setAccessibleRole(this, {QAccessible::Graphic});
    setAccessibleName(accessibleName);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void PictureView::setBox(QSize box)
{
    m_look.box = box;
    updateGeometry();
}

QSize PictureView::sizeHint() const { return m_picture.fittedSize(m_look.box); }

QRect PictureView::pictureBounds() const
{
    // Fitted twice, the size could become a pixel smaller.
    QRect bounds{{0, 0}, size() == sizeHint() ? size() : m_picture.fittedSize(size())};
    bounds.moveCenter(rect().center());
    return bounds;
}

QPainterPath PictureView::outline() const { return roundedRect(pictureBounds(), m_look.cornerRadius); }

void PictureView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    const QRect bounds = pictureBounds();
    painter.drawPixmap(PixelSnapper{painter}.aligned(bounds.topLeft()),
                       m_picture.pixmap(bounds.size(), devicePixelRatioF()));
}

} // namespace quilmora
