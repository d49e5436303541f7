#pragma once

#include <QString>
#include <QUrl>

namespace quilmora {

/// The folder in which a demonstration takes place: a home folder of its own, the pictures to upload, and
/// what the demonstration leaves behind.
class DemoFolder final
{
public:
    /// Uses the folder at `path`, creating it if it is missing, and takes away what an earlier demonstration
    /// made there; other files stay. Ends the program when that fails.
    explicit DemoFolder(const QString &path);

    /// Makes this process live in the folder's home. To be called before the application is created.
    void enterHome() const;

    /// Draws the pictures to upload; needs an application.
    void drawPictures() const;

    /// Stores settings that lead to `service` with `key`.
    void configure(const QUrl &service, const QString &key) const;

    QString presenterPhoto() const { return file(QStringLiteral("presenter.jpg")); }
    QString sampleCover() const { return file(QStringLiteral("sample-cover.png")); }
    QString exportedCover() const { return file(QStringLiteral("cover.png")); }

    /// Absolute path of a file in the folder.
    QString file(const QString &name) const;

private:
    QString home() const { return file(QStringLiteral("quilmora-demo-home")); }

    QString m_root;
};

} // namespace quilmora
