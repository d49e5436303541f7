#pragma once

#include <QImage>
#include <QString>

#include <optional>

/// The folder of the covers, and the paths of its files in the history.
namespace quilmora::coversFolder {

/// "Quilmora/coverimg" in the user's pictures folder; absolute and without a final slash.
QString path();

/// The path in the history of the cover with that file name: "~/Pictures/Quilmora/coverimg/" and the name,
/// the same on every machine.
QString storedPath(const QString &name);

} // namespace quilmora::coversFolder

namespace quilmora {

/// Keeps every generated cover as a PNG file in one folder. Main thread only.
class ImageStorageService final
{
public:
    /// Creates the folder, with those above it, if it is missing.
    explicit ImageStorageService(QString coverImageDirectory);

    /// The application's instance, in coversFolder::path().
    static ImageStorageService &shared();

    /// Writes `image` under a name of the current time and a random number. Gives its storedPath();
    /// nothing when it cannot be encoded or written, the latter printed as one line on standard output.
    std::optional<QString> saveImage(const QImage &image);

    /// The picture at a stored path; null when there is none.
    QImage loadImage(const QString &path) const;

    /// Removes the file at a stored path, if it is there.
    void deleteImage(const QString &path);

private:
    const QString m_coverImageDirectory;
};

} // namespace quilmora
