#pragma once

#include "local_service/http/LocalImageService.h"

#include <QHash>
#include <QSize>
#include <QTemporaryDir>
#include <QUrl>

namespace quilmora::gallery
{

/// What all scenes share: the image service, the pictures to upload, and covers that were made before. Needs
/// an application; nothing of it lies in a home folder.
class Backstage final
{
public:
    Backstage();
    Q_DISABLE_COPY_MOVE(Backstage)
    ~Backstage() = default;

    /// The address of a service that answers as fast as it can.
    QUrl service() const { return quick.endpoint(); }
    /// The address of one that lets everybody wait.
    QUrl slowService() const { return slow.endpoint(); }
    /// The key that both accept.
    static QString key();

    QString presenterPhoto() const { return folder.filePath(QStringLiteral("presenter.jpg")); }
    QString sampleCover() const { return folder.filePath(QStringLiteral("sample-cover.png")); }
    /// A picture file larger than any that may be uploaded.
    QString hugePhoto() const { return folder.filePath(QStringLiteral("huge.png")); }

    /// A PNG file with a cover of that size, composed by the service's own hand on first use. The same for
    /// the same arguments.
    QString cover(const QString &title, const QString &scene, QSize size);

private:
    const QTemporaryDir folder;
    LocalImageService quick;
    LocalImageService slow;
    QHash<QString, QString> covers;
};

} // namespace quilmora::gallery
