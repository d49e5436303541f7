#pragma once

#include <QProcess>
#include <QTemporaryDir>

namespace quilmora::bench {

/// A program with a window, started on the X display of the environment with the given home folder. Ended
/// with all its children when this is destroyed.
class StartedProgram final
{
public:
    StartedProgram(const QString &program, const QStringList &arguments, const QString &home);
    Q_DISABLE_COPY_MOVE(StartedProgram)
    ~StartedProgram();

    /// Waits until it and its children have used no processor time for a while.
    void waitUntilIdle() const;

    /// The memory of it and its children in mebibytes, what is shared with others counted in parts.
    double proportionalMemory() const;

    /// Bytes that it itself has given to the file system to be written to the disk.
    qint64 bytesWritten() const;

private:
    /// It and its children's children.
    QList<qint64> processes() const;
    qint64 processorTicks() const;

    QProcess m_process;
};

} // namespace quilmora::bench
