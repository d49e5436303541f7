#pragma once

#include <QString>
#include <QTemporaryDir>

namespace quilmora::test {

/// A home folder of its own for as long as it exists: the user's files are out of the test's reach.
/// To be made before anything asks for a folder.
class TemporaryHome final
{
public:
    TemporaryHome();
    Q_DISABLE_COPY_MOVE(TemporaryHome)
    ~TemporaryHome();

    /// Absolute path of the home folder, or of something in it.
    QString path(const QString &inside = {}) const;

private:
    QTemporaryDir m_folder;
    QByteArray m_formerHome;
    QByteArray m_formerDataHome;
    QByteArray m_formerConfigHome;
};

} // namespace quilmora::test
