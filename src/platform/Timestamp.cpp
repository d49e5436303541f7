#include "platform/Timestamp.h"

#include <QDateTime>

#include <cmath>

namespace quilmora {

Timestamp now() { return std::chrono::system_clock::now(); }

Timestamp fromSecondsSince1970(double seconds) { return Timestamp{std::chrono::duration<double>{seconds}}; }

double secondsSince1970(Timestamp moment) { return moment.time_since_epoch().count(); }

QString localDateText(Timestamp moment, const QString &pattern)
{
    // Rounding down keeps 09:07:03.9996 at second 03.
    const double milliseconds = std::floor(secondsSince1970(moment) * 1000.0);
    constexpr double representable = 8.0e15;
    if (!(std::abs(milliseconds) < representable)) {
        return {};
    }
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds)).toString(pattern);
}

} // namespace quilmora
