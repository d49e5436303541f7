#pragma once

#include <QImage>
#include <QPixmap>
#include <QSize>

namespace quilmora
{

/// A picture made ready for the screen: scaled, and its corners rounded, once for a size and resolution,
/// however often it is painted.
class ScaledPicture final
{
public:
    /// `cornerRadius` in device-independent pixels.
    explicit ScaledPicture(double cornerRadius) : radius{cornerRadius} {}

    void setImage(const QImage &image);
    bool isNull() const { return image.isNull(); }

    /// The largest size with the picture's proportions that fits into `box`, in device-independent pixels.
    QSize fittedSize(QSize box) const;

    /// The picture at that size for a screen of that resolution; scaled anew only when either differs from
    /// the last time.
    const QPixmap &pixmap(QSize size, double devicePixelRatio);

private:
    double radius;
    QImage image;
    QPixmap scaled;
};

} // namespace quilmora
