#pragma once

#include <QString>

#include <chrono>
#include <sys/types.h>

namespace quilmora::test {

/// Another process that holds a lock on a database file.
class DatabaseLocker final
{
public:
    enum class Lock {
        writing,  ///< Others may read, but not write.
        exclusive ///< Others may not even read.
    };

    /// For a lock that lasts as long as this object.
    static constexpr std::chrono::milliseconds lasting{-1};

    /// Returns once the file is locked; it is let go again after `time`.
    explicit DatabaseLocker(const QString &file, Lock lock = Lock::exclusive,
                            std::chrono::milliseconds time = lasting);
    Q_DISABLE_COPY_MOVE(DatabaseLocker)
    /// Lets the file go and waits for the process's end.
    ~DatabaseLocker();

private:
    pid_t m_process = -1;
    int m_line = -1; ///< The process ends when it is closed.
};

} // namespace quilmora::test
