#include "platform/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

bool writeWhole(QFile &file, const QByteArray &bytes)
{
    qint64 done = 0;
    // A full disk takes a part without an error; the next write reports it.
    while (done < bytes.size()) {
        const qint64 taken = file.write(bytes.constData() + done, bytes.size() - done);
        if (taken <= 0) {
            return false;
        }
        done += taken;
    }
    return true;
}

qint64 nanoseconds(const timespec &moment)
{
    constexpr qint64 perSecond = 1'000'000'000;
    return qint64{moment.tv_sec} * perSecond + moment.tv_nsec;
}

} // namespace

QString userFolders::home() { return QDir::homePath(); }

QString userFolders::applicationSupport()
{
    // Not AppDataLocation, which would add the organisation's and the application's name.
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString userFolders::pictures() { return home() + u"/Pictures"_s; }

QString userFolders::expandTilde(const QString &path)
{
    const bool isInHome = path == u"~"_s || path.startsWith(u"~/"_s);
    return isInHome ? home() + path.mid(1) : path;
}

std::optional<QString> writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file{path};
    // Unbuffered, so that the write itself reports a full disk.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    const bool whole = writeWhole(file, bytes);
    QString error = file.errorString();
    file.close();
    if (whole && file.error() == QFileDevice::NoError) {
        return std::nullopt;
    }
    if (whole) {
        error = file.errorString();
    }
    // A device or a link to one is left alone.
    if (const QFileInfo target{path}; target.isFile()) {
        QFile::remove(target.canonicalFilePath());
    }
    return error;
}

std::optional<FileFingerprint> fileFingerprint(const QString &path)
{
    // Not QFileInfo, whose times have only milliseconds.
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
