#pragma once

#include "generation/GenerationResult.h"

#include <QByteArray>
#include <QUrl>

#include <functional>
#include <optional>

namespace quilmora {

/// Reads a whole resource, blocking the calling thread; nothing when that fails.
using ResourceReader = std::function<std::optional<QByteArray>(const QUrl &)>;

/// Parses the body of a response of the image service, of any HTTP status, as a picture or an error.
/// Never throws. Calls `readResource` when the response contains only the address of the picture. Any thread.
GenerationResult parseResponse(const QByteArray &body, const ResourceReader &readResource);

} // namespace quilmora
