#include "Report.h"

#include "platform/Console.h"

#include <QElapsedTimer>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace quilmora::bench
{

double medianOf(int runs, const std::function<double()> &measure)
{
    std::vector<double> values(static_cast<std::size_t>(runs));
    std::generate(values.begin(), values.end(), measure);
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double medianMilliseconds(int runs, const std::function<void()> &work)
{
    return medianOf(runs, [&] {
        QElapsedTimer timer;
        timer.start();
        work();
        return static_cast<double>(timer.nsecsElapsed()) / 1e6;
    });
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
