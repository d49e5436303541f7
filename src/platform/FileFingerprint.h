#pragma once

#include <QString>

#include <optional>

namespace quilmora {

/// Tells one state of a file from another: after any change of its content or its rights, or when another
/// file has taken its name, the stamp differs.
struct FileFingerprint {
    quint64 device;
    quint64 file; ///< The file's number on its device.
    qint64 bytes;
    qint64 modified; ///< Nanoseconds since 1970-01-01 UTC, of the content.
    qint64 changed;  ///< The same, of the content, the name or the rights.

    bool operator==(const FileFingerprint &) const = default;
};

/// The stamp of the regular file at `path`, links followed; nothing when there is none.
std::optional<FileFingerprint> fileFingerprint(const QString &path);

} // namespace quilmora
