#pragma once

#include <QImage>
#include <QWidget>

#include <optional>

namespace quilmora {

class ActionButton;
class ErrorLine;
class FileDialogs;
class UploadButton;

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
