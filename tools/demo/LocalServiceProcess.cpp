#include "LocalServiceProcess.h"

#include <QCoreApplication>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

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
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        m_process.waitForFinished();
    }
}

QUrl LocalServiceProcess::start(const QString &key)
{
    tieToThisProcess(m_process);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString program =
        QCoreApplication::applicationDirPath() + u"/../local_service/quilmora-local-service"_s;
    m_process.start(program, {u"--key"_s, key, u"--delay"_s, u"2500"_s});
    const QByteArray announcement = "listening on ";
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead()) {
            return {};
        }
    }
    const QByteArray line = m_process.readLine().trimmed();
    return line.startsWith(announcement) ? QUrl{QString::fromUtf8(line.sliced(announcement.size()))} : QUrl{};
}

} // namespace quilmora
