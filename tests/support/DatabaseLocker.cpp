#include "support/DatabaseLocker.h"

#include <QByteArray>

#include <array>
#include <poll.h>
#include <sqlite3.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quilmora::test {
namespace {

[[noreturn]] void holdAndExit(const QByteArray &file, DatabaseLocker::Lock lock, int time, int line)
{
    const bool exclusive = lock == DatabaseLocker::Lock::exclusive;
    sqlite3 *connection = nullptr;
    if (sqlite3_open(file.constData(), &connection) != SQLITE_OK ||
        sqlite3_exec(connection, exclusive ? "BEGIN EXCLUSIVE" : "BEGIN IMMEDIATE", nullptr, nullptr,
                     nullptr) != SQLITE_OK ||
        write(line, "l", 1) != 1) {
        _exit(1);
    }
    pollfd end{line, POLLIN, 0};
    poll(&end, 1, time);
    sqlite3_close(connection);
    _exit(0);
}

} // namespace

DatabaseLocker::DatabaseLocker(const QString &file, Lock lock, std::chrono::milliseconds time)
{
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) {
        qFatal("Cannot speak with another process");
    }
    m_process = fork();
    if (m_process == 0) {
        close(ends[0]);
        holdAndExit(file.toUtf8(), lock, static_cast<int>(time.count()), ends[1]);
    }
    close(ends[1]);
    m_line = ends[0];
    char sign = 0;
    if (m_process < 0 || read(m_line, &sign, 1) != 1) {
        qFatal("Another process cannot lock the database");
    }
}

DatabaseLocker::~DatabaseLocker()
{
    close(m_line);
    waitpid(m_process, nullptr, 0);
}

} // namespace quilmora::test
