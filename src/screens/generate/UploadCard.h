#pragma once

#include "ui/theme/Symbol.h"
#include "ui/widgets/PaintedButton.h"
#include "ui/widgets/PictureView.h"

#include <QImage>
#include <QWidget>

#include <optional>

namespace quilmora {

class ActionButton;
class ErrorLine;
class FileDialogs;

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

/// Lets the user choose and remove one reference picture.
class UploadCard final : public QWidget
{
    Q_OBJECT

public:
    /// `dialogs` must outlive the card.
    UploadCard(const QString &title, const QString &iconName, FileDialogs &dialogs,
               QWidget *parent = nullptr);

    /// The picture, upright and in sRGB; null for none.
    const QImage &image() const { return m_picture; }

private:
    void chooseFile();
    void load(const QString &path);
    void setImage(const QImage &image, const QString &fileName);
    void removeImage();

    FileDialogs &m_dialogs;
    QImage m_picture;
    UploadButton *m_face;
    ErrorLine *m_errorLine;
    ActionButton *m_removeButton;
};

} // namespace quilmora
