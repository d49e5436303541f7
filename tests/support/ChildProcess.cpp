#include "support/ChildProcess.h"

#include <QFile>
#include <QTemporaryFile>

#include <csignal>
#include <cstdio>
#include <grp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/mount.h>
#endif

namespace quilmora::test::childProcess {
namespace {

[[noreturn]] void runAndExit(const std::function<void()> &action, int output)
{
    constexpr unsigned hangAfterSeconds = 10;
    const rlimit noCoreFile{0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    for (const int number : {SIGABRT, SIGSEGV, SIGALRM}) {
        std::signal(number, SIG_DFL);
    }
    alarm(hangAfterSeconds);
    qInstallMessageHandler(nullptr);
    dup2(output, STDOUT_FILENO);
    action();
    std::fflush(stdout);
    _exit(0);
}

} // namespace

Outcome run(const std::function<void()> &action)
{
    QTemporaryFile output;
    std::fflush(stdout);
    if (!output.open()) {
        qFatal("Cannot keep a child's output");
    }
    const pid_t child = fork();
    if (child == 0) {
        runAndExit(action, output.handle());
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        qFatal("Cannot run a child process");
    }
    Outcome outcome;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    output.seek(0);
    outcome.standardOutput = output.readAll();
    return outcome;
}

void becomeOrdinaryUser()
{
    constexpr uid_t nobody = 65534;
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
        qFatal("Cannot become an ordinary user");
    }
}

void limitFileSize(qint64 bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) {
        qFatal("Cannot limit the size of files");
    }
}

bool mountSmallDisk(const QString &folder, qint64 bytes)
{
#ifdef Q_OS_LINUX
    const QByteArray size = "size=" + QByteArray::number(bytes);
    return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, size.constData()) == 0;
#else
    Q_UNUSED(folder)
    Q_UNUSED(bytes)
    return false;
#endif
}

} // namespace quilmora::test::childProcess
