#include "LocalServiceProcess.h"

#include <QCoreApplication>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Lets the service end with this process, however that ends; elsewhere it is only stopped in order.
void tieToThisProcess([[maybe_unused]] QProcess &process)
{
#ifdef Q_OS_LINUX
    process.setChildProcessModifier([parent = getpid()] {
        // By number: between fork and exec nothing but system calls may be made.
        if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0 || getppid() != parent) {
            _exit(1);
        }
    });
#endif
}

} // namespace

LocalServiceProcess::~LocalServiceProcess()
{
    if (process.state() != QProcess::NotRunning) {
        process.terminate();
        process.waitForFinished();
    }
}

QUrl LocalServiceProcess::start(const QString &key)
{
    tieToThisProcess(process);
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
