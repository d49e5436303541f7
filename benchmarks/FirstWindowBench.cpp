#include "FirstWindowBench.h"

#include "FirstPaintProbe.h"
#include "Report.h"
#include "StartedProgram.h"
#include "platform/Console.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>
#include <vector>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

struct Program {
    QString file;
    QStringList arguments;
    QString home;
};

/// What starts of one program took.
struct Starts {
    std::vector<double> milliseconds;
    std::vector<double> mebibytes;
    std::vector<double> bytesWritten;
};

void startOnce(FirstPaintProbe &watch, const Program &program, Starts &starts)
{
    watch.reset();
    const auto before = std::chrono::steady_clock::now();
    const StartedProgram started{program.file, program.arguments, program.home};
    starts.milliseconds.push_back(
        std::chrono::duration<double, std::milli>{watch.paintedAt() - before}.count());
    started.waitUntilIdle();
    starts.mebibytes.push_back(started.proportionalMemory());
    starts.bytesWritten.push_back(static_cast<double>(started.bytesWritten()));
}

/// Starts all programs by turns, after one start of each that does not count: it fills caches and makes the
/// database.
std::vector<Starts> startByTurns(FirstPaintProbe &watch, int runs, const std::vector<Program> &programs)
{
    for (const Program &program : programs) {
        Starts first;
        startOnce(watch, program, first);
    }
    std::vector<Starts> starts(programs.size());
    for (int run = 0; run < runs; ++run) {
        for (std::size_t i = 0; i < programs.size(); ++i) {
            startOnce(watch, programs[i], starts[i]);
        }
    }
    return starts;
}

struct Goals {
    double time;
    double memory;
};

/// The first of the two programs, which is ours, against the other.
void reportAgainst(const QString &other, const std::vector<Starts> &starts, Goals goals)
{
    report(u"start to painted window, against "_s + other, median(starts[0].milliseconds),
           median(starts[1].milliseconds), goals.time);
    reportMemory(u"memory of the window, against "_s + other, median(starts[0].mebibytes),
                 median(starts[1].mebibytes), goals.memory);
}

QString beside(const QString &program) { return QCoreApplication::applicationDirPath() + u'/' + program; }

void reportAgainstBrowser(FirstPaintProbe &watch, const Program &ours, const QString &home)
{
    const QString browser = QStandardPaths::findExecutable(u"chromium"_s);
    if (browser.isEmpty()) {
        console::printLine(u"Not measured against a browser's window: chromium is not installed."_s);
        return;
    }
    const Program window{browser,
                         {u"--app=about:blank"_s, u"--no-sandbox"_s, u"--no-first-run"_s,
                          u"--window-size=1000,700"_s, u"--user-data-dir=%1/profile"_s.arg(home)},
                         home};
    constexpr int runs = 5;
    const auto starts = startByTurns(watch, runs, {ours, window});
    reportAgainst(u"an empty browser window"_s, starts, {0.25, 0.2});
}

} // namespace

void benchFirstWindow()
{
    if (!qEnvironmentVariableIsSet("DISPLAY")) {
        console::printLine(u"The start of the program was not measured: there is no X display."_s);
        return;
    }
    FirstPaintProbe watch;
    const QTemporaryDir ourHome;
    const QTemporaryDir bareHome;
    const QTemporaryDir browserHome;
    const Program ours{beside(u"../quilmora"_s), {}, ourHome.path()};
    const Program bare{beside(u"quilmora-bare-window"_s), {}, bareHome.path()};
    constexpr int runs = 15;
    const auto starts = startByTurns(watch, runs, {ours, bare});
    reportAgainst(u"a bare window"_s, starts, {3.0, 2.0});
    reportCount(u"bytes written to the disk by a start that finds nothing new"_s,
                *std::max_element(starts[0].bytesWritten.begin(), starts[0].bytesWritten.end()), 0);
    reportAgainstBrowser(watch, ours, browserHome.path());
}

} // namespace quilmora::bench
