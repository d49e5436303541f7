#pragma once

#include "ui/widgets/ScaledPicture.h"
#include "ui/widgets/ShadowHost.h"

namespace quilmora {

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
