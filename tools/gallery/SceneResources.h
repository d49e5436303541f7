#pragma once

#include "local_service/http/LocalImageService.h"

#include <QHash>
#include <QSize>
#include <QTemporaryDir>
#include <QUrl>

namespace quilmora::gallery {

/// What all scenes share: the image service, the pictures to upload, and covers that were made before. Needs
/// an application; nothing of it lies in a home folder.
class SceneResources final
{
public:
    SceneResources();
    Q_DISABLE_COPY_MOVE(SceneResources)
    ~SceneResources() = default;

    /// The address of a service that answers as fast as it can.
    QUrl service() const { return m_quick.endpoint(); }
    /// The address of one that lets everybody wait.
    QUrl slowService() const { return m_slow.endpoint(); }
    /// The key that both accept.
    static QString key();

    QString presenterPhoto() const { return m_folder.filePath(QStringLiteral("presenter.jpg")); }
    QString sampleCover() const { return m_folder.filePath(QStringLiteral("sample-cover.png")); }
    /// A picture file larger than any that may be uploaded.
    QString hugePhoto() const { return m_folder.filePath(QStringLiteral("huge.png")); }

    /// A PNG file with a cover of that size, composed by the service's own hand on first use. The same for
    /// the same arguments.
    QString cover(const QString &title, const QString &scene, QSize size);

private:
    const QTemporaryDir m_folder;
    localservice::LocalImageService m_quick;
    localservice::LocalImageService m_slow;
    QHash<QString, QString> m_covers;
};

} // namespace quilmora::gallery
