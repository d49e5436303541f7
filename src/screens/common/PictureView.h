#pragma once

#include "screens/common/ScaledPicture.h"
#include "screens/common/ShadowGround.h"

namespace quilmora
{

/// A picture as large as fits into a box, with rounded corners. Its shadow shows when it lies on a
/// ShadowGround.
class PictureView final : public QWidget, public ShadowCaster
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PictureView)

public:
    struct Look {
        QSize box; ///< Largest size of the picture, in device-independent pixels.
        double cornerRadius;
        Shadow shadow;
    };

    PictureView(const QImage &image, const QString &accessibleName, const Look &look,
                QWidget *parent = nullptr);
    ~PictureView() override = default;

    /// Changes the largest size of the picture, in device-independent pixels.
    void setBox(QSize box);

    Shadow shadow() const override { return look.shadow; }
    QPainterPath outline() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect pictureBounds() const;

    Look look;
    ScaledPicture picture;
};

} // namespace quilmora
