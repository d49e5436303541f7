#include "reliability/ServiceProcess.h"

#include "reliability/WorkedSettings.h"

using namespace Qt::StringLiterals;

namespace quilmora::test
{

ServiceProcess::ServiceProcess()
{
    QStringList arguments{u"--key"_s, workedKey, u"--delay"_s, u"0"_s};
    for (const QString &model : workedModels) {
        arguments += {u"--model"_s, model};
    }
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(QUILMORA_LOCAL_SERVICE_PROGRAM), arguments);
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead()) {
            qFatal("The image service does not start");
        }
    }
    address = QString::fromUtf8(process.readLine()).trimmed().section(u' ', -1);
}

ServiceProcess::~ServiceProcess()
{
    process.terminate();
    process.waitForFinished();
}

} // namespace quilmora::test
