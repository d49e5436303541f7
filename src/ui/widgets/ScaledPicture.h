#pragma once

#include <QImage>
#include <QPixmap>
#include <QSize>

namespace quilmora {

/// A picture that is scaled, and gets round corners, once for a size and resolution, however often it is
/// painted.
class ScaledPicture final
{
public:
    /// `cornerRadius` in device-independent pixels.
    explicit ScaledPicture(double cornerRadius) : m_radius{cornerRadius} {}

    void setImage(const QImage &image);
    bool isNull() const { return m_image.isNull(); }

    /// The largest size with the picture's proportions that fits into `box`, in device-independent pixels.
    QSize fittedSize(QSize box) const;

    /// Scaled again only when an argument differs from the last time.
    const QPixmap &pixmap(QSize size, double devicePixelRatio);

private:
    double m_radius;
    QImage m_image;
    QPixmap m_scaled;
};

} // namespace quilmora
