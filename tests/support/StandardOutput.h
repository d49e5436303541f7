#pragma once

#include <QTemporaryFile>

#include <cstdio>
#include <functional>
#include <unistd.h>

namespace quilmora::test {

/// The bytes that `action` writes to the process's standard output, from whatever layer; none of them reach
/// the outside. The framework's own warnings go to standard error meanwhile. Check the result afterwards, not
/// inside `action`: the test's own report goes to standard output too.
inline QByteArray standardOutputOf(const std::function<void()> &action)
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
