#pragma once

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <optional>

namespace quilmora {

class CancellationToken;

/// Reads the whole resource at `url` and holds up the calling thread meanwhile, which must not be the main
/// one. Only web addresses and data URLs are read: the address comes from a stranger and must not reach local
/// files. Nothing on any failure, beyond the size limit of responses, when no byte arrives for `idleLimit`,
/// and once `cancellationToken` is cancelled.
std::optional<QByteArray> downloadBlocking(const QUrl &url, std::chrono::milliseconds idleLimit,
                                           const CancellationToken &cancellationToken);

} // namespace quilmora
