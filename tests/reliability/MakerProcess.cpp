#include "reliability/MakerProcess.h"

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace quilmora::test
{
namespace
{

constexpr int longestMilliseconds = 60'000;

} // namespace

MakerProcess::MakerProcess(const QString &name, int count, const QString &endpoint)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(QUILMORA_COVER_MAKER), {name, QString::number(count), endpoint});
    if (!process.waitForStarted()) {
        qFatal("The cover maker does not start");
    }
}

MakerProcess::~MakerProcess()
{
    kill();
}

void MakerProcess::go()
{
    process.write("go\n");
    process.waitForBytesWritten();
}

bool MakerProcess::waitFor(const QByteArray &beginning)
{
    for (qsizetype next = 0;;) {
        read();
        for (; next < said.size(); ++next) {
            if (said.at(next).startsWith(beginning)) {
                return true;
            }
        }
        if (process.state() == QProcess::NotRunning || !process.waitForReadyRead(longestMilliseconds)) {
            read();
            return std::any_of(said.begin() + next, said.end(),
                               [&](const QByteArray &line) { return line.startsWith(beginning); });
        }
    }
}

bool MakerProcess::isRunning()
{
    // Lets the object see what has happened.
    process.waitForFinished(0);
    return process.state() == QProcess::Running;
}

bool MakerProcess::hasSaid(const QByteArray &beginning)
{
    process.waitForReadyRead(0);
    read();
    return std::any_of(said.begin(), said.end(),
                       [&](const QByteArray &line) { return line.startsWith(beginning); });
}

int MakerProcess::waitForEnd()
{
    while (process.state() != QProcess::NotRunning && process.waitForReadyRead(longestMilliseconds)) {
    }
    if (process.state() != QProcess::NotRunning) {
        process.waitForFinished(longestMilliseconds);
    }
    read();
    return process.state() == QProcess::NotRunning && process.exitStatus() == QProcess::NormalExit
               ? process.exitCode()
               : -1;
}

void MakerProcess::kill()
{
    if (process.state() != QProcess::NotRunning) {
        ::kill(static_cast<pid_t>(process.processId()), SIGKILL);
        process.waitForFinished();
    }
    read();
}

void MakerProcess::read()
{
    // A last line without its end was cut short by the kill.
    while (process.canReadLine()) {
        said.append(process.readLine().chopped(1));
    }
}

} // namespace quilmora::test
