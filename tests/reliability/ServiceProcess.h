#pragma once

#include <QProcess>
#include <QString>

namespace quilmora::test {

/// The bundled image service as a process of its own, without its artificial delay. It ends with this object.
class ServiceProcess final
{
public:
    ServiceProcess();
    Q_DISABLE_COPY_MOVE(ServiceProcess)
    ~ServiceProcess();

    /// Where it takes requests.
    const QString &endpoint() const { return m_address; }

private:
    QProcess m_process;
    QString m_address;
};

} // namespace quilmora::test
