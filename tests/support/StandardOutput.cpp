#include "support/StandardOutput.h"

#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

namespace quilmora::test {

QByteArray standardOutputOf(const std::function<void()> &action)
{
    QTemporaryFile file;
    std::fflush(stdout);
    const int former = dup(STDOUT_FILENO);
    if (!file.open() || former < 0 || dup2(file.handle(), STDOUT_FILENO) < 0) {
        qFatal("Cannot capture standard output");
    }
    // The test framework's handler would report warnings on standard output.
    const QtMessageHandler formerHandler = qInstallMessageHandler(nullptr);
    action();
    qInstallMessageHandler(formerHandler);
    std::fflush(stdout);
    dup2(former, STDOUT_FILENO);
    close(former);
    file.seek(0);
    return file.readAll();
}

} // namespace quilmora::test
