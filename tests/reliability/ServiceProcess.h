#pragma once

#include "reliability/WorkedSettings.h"

#include <QProcess>

namespace quilmora::test {

/// The bundled image service as a process of its own. It ends with this object.
class ServiceProcess final
{
public:
    /// With the settings of workedSettings() and without its artificial delay.
    ServiceProcess()
        : ServiceProcess{{QStringLiteral("--key"), workedKey, QStringLiteral("--delay"), QStringLiteral("0"),
                          QStringLiteral("--model"), workedModels[0], QStringLiteral("--model"),
                          workedModels[1]}}
    {
    }

    explicit ServiceProcess(const QStringList &arguments)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(QUILMORA_LOCAL_SERVICE_PROGRAM), arguments);
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead()) {
                qFatal("The image service does not start");
            }
        }
        m_address = QString::fromUtf8(m_process.readLine()).trimmed().section(u' ', -1);
    }
    Q_DISABLE_COPY_MOVE(ServiceProcess)
    ~ServiceProcess()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }

    /// Where it takes requests.
    const QString &endpoint() const { return m_address; }

private:
    QProcess m_process;
    QString m_address;
};

} // namespace quilmora::test
