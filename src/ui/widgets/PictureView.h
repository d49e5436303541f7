#pragma once

#include "ui/widgets/ShadowHost.h"

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

/// A picture as large as fits into a box, with rounded corners. A ShadowHost as parent draws its shadow.
class PictureView final : public QWidget, public ShadowSource
{
    Q_OBJECT

public:
    struct Look {
        QSize box; ///< Largest size of the picture, in device-independent pixels.
        double cornerRadius;
        Shadow shadow;
    };

    PictureView(const QImage &image, const QString &accessibleName, const Look &look,
                QWidget *parent = nullptr);

    void setBox(QSize box);

    Shadow shadow() const override { return m_look.shadow; }
    QPainterPath outline() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect pictureBounds() const;

    Look m_look;
    ScaledPicture m_picture;
};

} // namespace quilmora
