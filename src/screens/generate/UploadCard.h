#pragma once

#include <QImage>
#include <QWidget>

#include <optional>

namespace quilmora
{

class ActionButton;
class ErrorLine;
class FilePanels;
class UploadFace;

/// Lets the user pick one reference picture from a file, shows it, and takes it away again.
class UploadCard final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UploadCard)

public:
    /// `panels` must outlive the card.
    UploadCard(const QString &title, const QString &iconName, FilePanels &panels, QWidget *parent = nullptr);
    ~UploadCard() override = default;

    /// The picture, upright and in sRGB; null for none.
    const QImage &image() const { return picture; }

private:
    void chooseFile();
    void load(const QString &path);
    void setImage(const QImage &image, const QString &fileName);
    void removeImage();

    FilePanels &panels;
    QImage picture;
    UploadFace *face;
    ErrorLine *errorLine;
    ActionButton *removeButton;
};

} // namespace quilmora
