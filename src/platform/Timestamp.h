#pragma once

#include <QString>

#include <chrono>

namespace quilmora {

/// A moment, counted in seconds with fractions since 1970-01-01 UTC.
using Timestamp = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

Timestamp now();
Timestamp fromSecondsSince1970(double seconds);
double secondsSince1970(Timestamp moment);

/// `moment` in the user's time zone, formatted by a pattern such as "yyyy-MM-dd HH:mm".
QString localDateText(Timestamp moment, const QString &pattern);

} // namespace quilmora
