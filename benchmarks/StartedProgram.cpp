#include "StartedProgram.h"

#include "platform/Console.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

using namespace std::chrono_literals;

constexpr auto quietTime = 500ms;

QProcessEnvironment environmentOf(const QString &home)
{
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment environment;
    for (const QString &name : {u"PATH"_s, u"DISPLAY"_s, u"XAUTHORITY"_s, u"LD_LIBRARY_PATH"_s}) {
        if (own.contains(name)) {
            environment.insert(name, own.value(name));
        }
    }
    environment.insert(u"HOME"_s, home);
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    // The desktop of whoever runs this has no part in it.
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=%1/no-bus"_s.arg(home));
    environment.insert(u"no_proxy"_s, u"*"_s);
    return environment;
}

QByteArray readProc(qint64 id, const char *name)
{
    QFile file{u"/proc/%1/%2"_s.arg(id).arg(QLatin1String{name})};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

/// The fields of the process's status after its name, which may hold blanks.
QByteArrayList statusOf(qint64 id)
{
    const QByteArray status = readProc(id, "stat");
    return status.mid(status.lastIndexOf(')') + 2).split(' ');
}

/// The number after `key` on its line.
qint64 numberIn(const QByteArray &text, const QByteArray &key)
{
    for (const QByteArray &line : text.split('\n')) {
        if (line.startsWith(key)) {
            return line.mid(key.size()).simplified().split(' ').constFirst().toLongLong();
        }
    }
    return 0;
}

} // namespace

StartedProgram::StartedProgram(const QString &program, const QStringList &arguments, const QString &home)
{
    m_process.setProcessEnvironment(environmentOf(home));
    m_process.setWorkingDirectory(home);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(program, arguments);
    if (!m_process.waitForStarted()) {
        qFatal("%s does not start", qUtf8Printable(program));
    }
}

StartedProgram::~StartedProgram()
{
    for (const qint64 id : processes()) {
        ::kill(static_cast<pid_t>(id), SIGKILL);
    }
    m_process.waitForFinished();
}

QList<qint64> StartedProgram::processes() const
{
    QMultiHash<qint64, qint64> children;
    for (const QString &name : QDir{u"/proc"_s}.entryList(QDir::Dirs)) {
        bool isProcess = false;
        const qint64 id = name.toLongLong(&isProcess);
        const QByteArrayList status = isProcess ? statusOf(id) : QByteArrayList{};
        if (status.size() > 1) {
            children.insert(status.at(1).toLongLong(), id);
        }
    }
    QList<qint64> found{m_process.processId()};
    for (qsizetype next = 0; next < found.size(); ++next) {
        found += children.values(found.at(next));
    }
    return found;
}

qint64 StartedProgram::processorTicks() const
{
    qint64 ticks = 0;
    for (const qint64 id : processes()) {
        const QByteArrayList status = statusOf(id);
        constexpr int userTime = 11;
        constexpr int systemTime = 12;
        if (status.size() > systemTime) {
            ticks += status.at(userTime).toLongLong() + status.at(systemTime).toLongLong();
        }
    }
    return ticks;
}

void StartedProgram::waitUntilIdle() const
{
    constexpr int mostRounds = 60;
    qint64 before = -1;
    for (int round = 0; round < mostRounds; ++round) {
        const qint64 now = processorTicks();
        if (now == before) {
            return;
        }
        before = now;
        std::this_thread::sleep_for(quietTime);
    }
    console::printLine(u"%1 does not come to rest; its memory is that of now."_s.arg(m_process.program()));
}

double StartedProgram::proportionalMemory() const
{
    qint64 kibibytes = 0;
    for (const qint64 id : processes()) {
        kibibytes += numberIn(readProc(id, "smaps_rollup"), "Pss:");
    }
    return static_cast<double>(kibibytes) / 1024;
}

qint64 StartedProgram::bytesWritten() const
{
    return numberIn(readProc(m_process.processId(), "io"), "write_bytes:");
}

} // namespace quilmora::bench
