#pragma once

#include "screens/common/PaintedButton.h"
#include "screens/common/ScaledPicture.h"
#include "screens/common/Symbol.h"

namespace quilmora
{

/// The button of an upload card: an invitation to pick a picture, or the picture, as high as its width makes
/// it.
class UploadFace final : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UploadFace)

public:
    UploadFace(const QString &accessibleName, const QString &iconName, QWidget *parent = nullptr);
    ~UploadFace() override = default;

    /// Null for none. The accessible description names the file, or without a picture asks for one.
    void setImage(const QImage &image, const QString &fileName);

    QSize sizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintInvitation(QPainter &painter) const;
    void paintPicture(QPainter &painter);

    const Symbol symbol;
    ScaledPicture picture;
};

} // namespace quilmora
