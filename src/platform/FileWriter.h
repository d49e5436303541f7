#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quilmora {

/// Writes `bytes` to the file at `path`, replacing what was there. Gives the platform's description of the
/// error when the file could not be written whole; a file cut short is removed again.
std::optional<QString> writeFile(const QString &path, const QByteArray &bytes);

} // namespace quilmora
