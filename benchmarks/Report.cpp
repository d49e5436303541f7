#include "Report.h"

#include "platform/Console.h"

#include <QElapsedTimer>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace quilmora::bench
{

double medianMilliseconds(int runs, const std::function<void()> &work)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void report(const QString &what, double ours, double baseline, double goal)
{
    const double ratio = ours / baseline;
    console::printLine(u"%1 %2 ms  %3 ms  ratio %4  goal %5  %6"_s.arg(what, -58)
                           .arg(ours, 9, 'f', 2)
                           .arg(baseline, 9, 'f', 2)
                           .arg(ratio, 6, 'f', 3)
                           .arg(goal, 5, 'f', 2)
                           .arg(ratio <= goal ? u"met"_s : u"NOT MET"_s));
}

void reportMemory(const QString &what, double mebibytes, double goal)
{
    console::printLine(u"%1 %2 MiB %3 MiB  %4"_s.arg(what, -58)
                           .arg(mebibytes, 8, 'f', 1)
                           .arg(goal, 8, 'f', 1)
                           .arg(mebibytes <= goal ? u"met"_s : u"NOT MET"_s));
}

} // namespace quilmora::bench
