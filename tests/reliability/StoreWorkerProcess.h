#pragma once

#include <QByteArrayList>
#include <QProcess>
#include <QString>

#include <chrono>

namespace quilmora::test {

/// A running cover maker, and what it has said. It is killed with this object.
class StoreWorkerProcess final
{
public:
    /// Starts it for the home folder that this process has.
    StoreWorkerProcess(const QString &name, int count, const QString &endpoint);
    Q_DISABLE_COPY_MOVE(StoreWorkerProcess)
    ~StoreWorkerProcess();

    /// Lets it begin to make covers once it has started.
    void go();

    /// Waits until it has said a line that begins so; false when it ends first, or when nothing came for
    /// long.
    bool waitFor(const QByteArray &beginning);

    bool isRunning();

    /// Whether it has said a line that begins so; does not wait.
    bool hasSaid(const QByteArray &beginning);

    /// Waits for its end; its exit code, or -1 when it crashed.
    int waitForEnd();

    /// Ends it by SIGKILL, at once.
    void kill();

    /// All lines so far.
    const QByteArrayList &lines() const { return m_said; }

private:
    void read();

    QProcess m_process;
    QByteArrayList m_said;
};

} // namespace quilmora::test
