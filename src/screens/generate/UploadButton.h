#pragma once

#include "ui/theme/Symbol.h"
#include "ui/widgets/PaintedButton.h"
#include "ui/widgets/ScaledPicture.h"

namespace quilmora {

/// The button of an upload card: a placeholder, or the picture, as high as its width makes it.
class UploadButton final : public PaintedButton
{
    Q_OBJECT

public:
    UploadButton(const QString &accessibleName, const QString &iconName, QWidget *parent = nullptr);

    /// Null for none. The accessible description contains the name of the file.
    void setImage(const QImage &image, const QString &fileName);

    QSize sizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paint(QPainter &painter) override;

private:
    void paintPlaceholder(QPainter &painter) const;
    void paintPicture(QPainter &painter);

    const Symbol m_symbol;
    ScaledPicture m_picture;
};

} // namespace quilmora
