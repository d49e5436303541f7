#include "platform/FileFingerprint.h"

#include <QFile>

#include <sys/stat.h>

namespace quilmora {
namespace {

qint64 nanoseconds(const timespec &moment)
{
    constexpr qint64 perSecond = 1'000'000'000;
    return qint64{moment.tv_sec} * perSecond + moment.tv_nsec;
}

} // namespace

std::optional<FileFingerprint> fileFingerprint(const QString &path)
{
    // Not QFileInfo, whose times are cut to milliseconds.
    struct stat status {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
#ifdef Q_OS_MACOS
    const timespec &modified = status.st_mtimespec;
    const timespec &changed = status.st_ctimespec;
#else
    const timespec &modified = status.st_mtim;
    const timespec &changed = status.st_ctim;
#endif
    return FileFingerprint{static_cast<quint64>(status.st_dev), static_cast<quint64>(status.st_ino),
                           status.st_size, nanoseconds(modified), nanoseconds(changed)};
}

} // namespace quilmora
