#pragma once

#include <QString>

#include <functional>

namespace quilmora::bench
{

/// The median of what `measure` gives in `runs` calls.
double medianOf(int runs, const std::function<double()> &measure);

/// Milliseconds that `work` takes: the median of `runs`.
double medianMilliseconds(int runs, const std::function<void()> &work);

/// Prints one line of the table: ours beside what it is measured against, and their ratio beside the goal.
void report(const QString &what, double ours, double baseline, double goal);

/// The same for memory, both in mebibytes: what was measured, and the goal that it must not pass.
void reportMemory(const QString &what, double mebibytes, double goal);

} // namespace quilmora::bench
