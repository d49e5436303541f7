#include "ui/widgets/ScaledPicture.h"

#include "ui/theme/Shapes.h"

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

} // namespace quilmora
