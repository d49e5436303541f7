#pragma once

#include <QString>

#include <chrono>

namespace quilmora {

/// A moment, counted in seconds with fractions since 1970-01-01 UTC.
using Timestamp = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

/// The present moment.
Timestamp now();

/// The moment that many seconds after 1970-01-01 UTC.
Timestamp fromSecondsSince1970(double seconds);

/// Seconds since 1970-01-01 UTC.
double secondsSince1970(Timestamp moment);

/// `moment` in the user's time zone, written after a pattern such as "yyyy-MM-dd HH:mm".
QString localDateText(Timestamp moment, const QString &pattern);

} // namespace quilmora
