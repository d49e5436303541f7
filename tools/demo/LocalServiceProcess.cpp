#include "LocalServiceProcess.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace quilmora
{

LocalServiceProcess::~LocalServiceProcess()
{
    if (process.state() != QProcess::NotRunning) {
        process.terminate();
        process.waitForFinished();
    }
}

QUrl LocalServiceProcess::start(const QString &key)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString program =
        QCoreApplication::applicationDirPath() + u"/../local_service/quilmora-local-service"_s;
    process.start(program, {u"--key"_s, key, u"--delay"_s, u"2500"_s});
    const QByteArray announcement = "listening on ";
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead()) {
            return {};
        }
    }
    const QByteArray line = process.readLine().trimmed();
    return line.startsWith(announcement) ? QUrl{QString::fromUtf8(line.sliced(announcement.size()))} : QUrl{};
}

} // namespace quilmora
