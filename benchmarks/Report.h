#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <vector>

namespace quilmora::bench {

double median(std::vector<double> values);

/// The median of what `measure` gives in `runs` calls.
double medianOf(int runs, const std::function<double()> &measure);

/// Milliseconds that `work` takes, once.
double millisecondsOf(const std::function<void()> &work);

/// Milliseconds that `work` takes: the median of `runs`.
double medianMilliseconds(int runs, const std::function<void()> &work);

/// Two medians of milliseconds.
struct Pair {
    double ours;
    double baseline;
};

/// What both take, measured by turns, so that whatever else the machine does meets them alike.
Pair medianPair(int runs, const std::function<double()> &ours, const std::function<double()> &baseline);

/// Prints the head of the table.
void reportHead();

/// Prints one line of the table: ours beside what it is measured against, and their ratio beside the goal.
void report(const QString &what, double ours, double baseline, double goal);

/// The same for the sizes of files, in megabytes.
void reportSize(const QString &what, double ours, double baseline, double goal);

/// The same for memory, both in mebibytes: what was measured, and the goal that it must not pass.
void reportMemory(const QString &what, double mebibytes, double goal);

/// The same for two programs' memory.
void reportMemory(const QString &what, double ours, double baseline, double goal);

/// The same for something that is counted, beside the most that it may be.
void reportCount(const QString &what, double ours, double most);

/// Prints a line that has no goal: seconds, for several ways of doing the same.
struct Figure {
    QString way;
    double seconds;
};
void reportFigures(const QString &what, const QList<Figure> &figures);

/// Whether every goal reported so far was met.
bool allGoalsMet();

/// Writes all that was reported so far to the file at `path`, as JSON; its folder is made if it is missing.
/// Ends the program when that fails.
void writeReport(const QString &path);

} // namespace quilmora::bench
