#pragma once

#include <QString>

#include <chrono>

namespace quilmora
{

/// A moment, counted in seconds with fractions since 1970-01-01 UTC.
using PointInTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

/// The present moment.
PointInTime now();

/// The moment that many seconds after 1970-01-01 UTC.
PointInTime fromSecondsSince1970(double seconds);

/// Seconds since 1970-01-01 UTC.
double secondsSince1970(PointInTime moment);

/// `moment` in the user's time zone, written after a pattern such as "yyyy-MM-dd HH:mm".
QString localDateText(PointInTime moment, const QString &pattern);

} // namespace quilmora
