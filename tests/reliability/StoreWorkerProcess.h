#pragma once

#include <QByteArrayList>
#include <QProcess>

#include <algorithm>
#include <csignal>

namespace quilmora::test {

/// A running cover maker, and what it has said. It is killed with this object.
class StoreWorkerProcess final
{
public:
    /// Starts it for the home folder that this process has.
    StoreWorkerProcess(const QString &name, int count, const QString &endpoint)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(QUILMORA_STORE_WORKER), {name, QString::number(count), endpoint});
        if (!m_process.waitForStarted()) {
            qFatal("The cover maker does not start");
        }
    }
    Q_DISABLE_COPY_MOVE(StoreWorkerProcess)
    ~StoreWorkerProcess() { kill(); }

    /// Lets it begin to make covers once it has started.
    void go()
    {
        m_process.write("go\n");
        m_process.waitForBytesWritten();
    }

    /// Waits until it has said a line that begins so; false when it ends first, or when nothing came for
    /// long.
    bool waitFor(const QByteArray &beginning)
    {
        for (qsizetype next = 0;;) {
            read();
            for (; next < m_said.size(); ++next) {
                if (m_said.at(next).startsWith(beginning)) {
                    return true;
                }
            }
            if (m_process.state() == QProcess::NotRunning ||
                !m_process.waitForReadyRead(longestMilliseconds)) {
                read();
                return std::any_of(m_said.begin() + next, m_said.end(),
                                   [&](const QByteArray &line) { return line.startsWith(beginning); });
            }
        }
    }

    bool isRunning()
    {
        // Lets the object see what has happened.
        m_process.waitForFinished(0);
        return m_process.state() == QProcess::Running;
    }

    /// Whether it has said a line that begins so; does not wait.
    bool hasSaid(const QByteArray &beginning)
    {
        m_process.waitForReadyRead(0);
        read();
        return std::any_of(m_said.begin(), m_said.end(),
                           [&](const QByteArray &line) { return line.startsWith(beginning); });
    }

    /// Waits for its end; its exit code, or -1 when it crashed.
    int waitForEnd()
    {
        while (m_process.state() != QProcess::NotRunning && m_process.waitForReadyRead(longestMilliseconds)) {
        }
        if (m_process.state() != QProcess::NotRunning) {
            m_process.waitForFinished(longestMilliseconds);
        }
        read();
        return m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit
                   ? m_process.exitCode()
                   : -1;
    }

    /// Ends it by SIGKILL, at once.
    void kill()
    {
        if (m_process.state() != QProcess::NotRunning) {
            ::kill(static_cast<pid_t>(m_process.processId()), SIGKILL);
            m_process.waitForFinished();
        }
        read();
    }

    /// All lines so far.
    const QByteArrayList &lines() const { return m_said; }

private:
    static constexpr int longestMilliseconds = 60'000;

    void read()
    {
        // A last line without its end was truncated by the kill.
        while (m_process.canReadLine()) {
            m_said.append(m_process.readLine().chopped(1));
        }
    }

    QProcess m_process;
    QByteArrayList m_said;
};

} // namespace quilmora::test
