#pragma once

#include <QProcess>
#include <QUrl>

namespace quilmora {

/// The bundled image service as a process of its own; it ends with this object, and on Linux with this
/// process even if that is killed.
class LocalServiceProcess final
{
public:
    LocalServiceProcess() = default;
    Q_DISABLE_COPY_MOVE(LocalServiceProcess)
    ~LocalServiceProcess();

    /// Starts the service on a free loopback port and gives the address of its endpoint; an empty one when it
    /// does not come up.
    QUrl start(const QString &key);

private:
    QProcess m_process;
};

} // namespace quilmora
