#include "ResidentMemory.h"

#include <QByteArray>
#include <QFile>

using namespace Qt::StringLiterals;

namespace quilmora::bench::residentMemory {

void resetPeak()
{
    QFile file{u"/proc/self/clear_refs"_s};
    if (file.open(QIODevice::WriteOnly)) {
        file.write("5");
    }
}

double peak()
{
    QFile file{u"/proc/self/status"_s};
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QByteArray status = file.readAll();
    const QByteArray field = "VmHWM:";
    const qsizetype start = status.indexOf(field) + field.size();
    constexpr double kibibytesPerMebibyte = 1024.0;
    return status.mid(start, status.indexOf("kB", start) - start).trimmed().toDouble() / kibibytesPerMebibyte;
}

} // namespace quilmora::bench::residentMemory
