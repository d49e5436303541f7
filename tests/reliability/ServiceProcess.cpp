#include "reliability/ServiceProcess.h"

#include "reliability/WorkedSettings.h"

using namespace Qt::StringLiterals;

namespace quilmora::test {

ServiceProcess::ServiceProcess()
{
    QStringList arguments{u"--key"_s, workedKey, u"--delay"_s, u"0"_s};
    for (const QString &model : workedModels) {
        arguments += {u"--model"_s, model};
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(QUILMORA_LOCAL_SERVICE_PROGRAM), arguments);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead()) {
            qFatal("The image service does not start");
        }
    }
    m_address = QString::fromUtf8(m_process.readLine()).trimmed().section(u' ', -1);
}

ServiceProcess::~ServiceProcess()
{
    m_process.terminate();
    m_process.waitForFinished();
}

} // namespace quilmora::test
