#pragma once

#include <QString>
#include <QTemporaryDir>

#include <map>

namespace quilmora::test {

/// A home folder of its own for as long as it exists: the user's files are out of the test's reach.
/// To be made before anything asks for a folder.
class TemporaryHome final
{
public:
    TemporaryHome()
    {
        if (!m_folder.isValid()) {
            qFatal("No temporary home folder");
        }
        for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
            m_former[variable] = qgetenv(variable);
            qunsetenv(variable);
        }
        qputenv("HOME", m_folder.path().toLocal8Bit());
    }
    Q_DISABLE_COPY_MOVE(TemporaryHome)
    ~TemporaryHome()
    {
        for (const auto &[variable, value] : m_former) {
            if (value.isNull()) {
                qunsetenv(variable);
            } else {
                qputenv(variable, value);
            }
        }
    }

    /// Absolute path of the home folder, or of something in it.
    QString path(const QString &inside = {}) const
    {
        return inside.isEmpty() ? m_folder.path() : m_folder.filePath(inside);
    }

private:
    const QTemporaryDir m_folder;
    std::map<const char *, QByteArray> m_former; ///< Variables of the environment.
};

} // namespace quilmora::test
