#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace quilmora {

/// Keeps every generated cover as a PNG file in one folder. To be used from the main thread.
class ImageStorageService final
{
public:
    /// Keeps the covers in `coverImageDirectory`, which is created, with the folders above it, if missing.
    explicit ImageStorageService(QString coverImageDirectory);
    Q_DISABLE_COPY_MOVE(ImageStorageService)
    ~ImageStorageService() = default;

    /// The one instance of the running application, in "Quilmora/coverimg" of the user's pictures folder.
    static ImageStorageService &shared();

    /// Writes `image` under a name made of the present time and a random number. Gives the path to store, in
    /// the form "~/Pictures/Quilmora/coverimg/…"; nothing when the image cannot be encoded or written, the
    /// latter printed as one line on standard output.
    std::optional<QString> saveImage(const QImage &image);

    /// The picture at a stored path; null when there is none.
    QImage loadImage(const QString &path) const;

    /// Removes the file at a stored path, if it is there.
    void deleteImage(const QString &path);

private:
    const QString m_coverImageDirectory;
};

} // namespace quilmora
