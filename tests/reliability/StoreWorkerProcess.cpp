#include "reliability/StoreWorkerProcess.h"

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

constexpr int longestMilliseconds = 60'000;

} // namespace

StoreWorkerProcess::StoreWorkerProcess(const QString &name, int count, const QString &endpoint)
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QStringLiteral(QUILMORA_STORE_WORKER), {name, QString::number(count), endpoint});
    if (!m_process.waitForStarted()) {
        qFatal("The cover maker does not start");
    }
}

StoreWorkerProcess::~StoreWorkerProcess()
{
    kill();
}

void StoreWorkerProcess::go()
{
    m_process.write("go\n");
    m_process.waitForBytesWritten();
}

bool StoreWorkerProcess::waitFor(const QByteArray &beginning)
{
    for (qsizetype next = 0;;) {
        read();
        for (; next < m_said.size(); ++next) {
            if (m_said.at(next).startsWith(beginning)) {
                return true;
            }
        }
        if (m_process.state() == QProcess::NotRunning || !m_process.waitForReadyRead(longestMilliseconds)) {
            read();
            return std::any_of(m_said.begin() + next, m_said.end(),
                               [&](const QByteArray &line) { return line.startsWith(beginning); });
        }
    }
}

bool StoreWorkerProcess::isRunning()
{
    // Lets the object see what has happened.
    m_process.waitForFinished(0);
    return m_process.state() == QProcess::Running;
}

bool StoreWorkerProcess::hasSaid(const QByteArray &beginning)
{
    m_process.waitForReadyRead(0);
    read();
    return std::any_of(m_said.begin(), m_said.end(),
                       [&](const QByteArray &line) { return line.startsWith(beginning); });
}

int StoreWorkerProcess::waitForEnd()
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

void StoreWorkerProcess::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        ::kill(static_cast<pid_t>(m_process.processId()), SIGKILL);
        m_process.waitForFinished();
    }
    read();
}

void StoreWorkerProcess::read()
{
    // A last line without its end was truncated by the kill.
    while (m_process.canReadLine()) {
        m_said.append(m_process.readLine().chopped(1));
    }
}

} // namespace quilmora::test
