#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The current user's folders. All paths are absolute and without a final slash.
namespace quilmora::userFolders {

QString home();

/// Of application data; programs keep a subfolder of their own in it.
QString applicationSupport();

/// "Pictures" in the home folder, not the localized folder of the desktop: stored paths begin with
/// "~/Pictures/" on every machine.
QString pictures();

/// `path` with a leading "~" replaced by the home folder. "~name" and every other path stay as they are.
QString expandTilde(const QString &path);

} // namespace quilmora::userFolders

namespace quilmora {

/// Writes `bytes` to the file at `path`, replacing what was there. Gives the platform's description of the
/// error when the file could not be written whole; a truncated file is removed.
std::optional<QString> writeFile(const QString &path, const QByteArray &bytes);

/// Identifies one state of a file: it differs after any change of the content or the permissions, and when
/// the file is replaced.
struct FileFingerprint {
    quint64 device;
    quint64 file; ///< The file's number on its device.
    qint64 bytes;
    qint64 modified; ///< Nanoseconds since 1970-01-01 UTC, of the content.
    qint64 changed;  ///< The same, of the content, the name or the permissions.

    bool operator==(const FileFingerprint &) const = default;
};

/// Of the regular file at `path`, links followed; nothing when there is none.
std::optional<FileFingerprint> fileFingerprint(const QString &path);

} // namespace quilmora
