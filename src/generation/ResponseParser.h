#pragma once

#include "generation/GenerationResult.h"

#include <QByteArray>
#include <QUrl>

#include <functional>
#include <optional>

namespace quilmora {

/// Reads a whole resource, blocking the calling thread; nothing when that fails.
using ResourceReader = std::function<std::optional<QByteArray>(const QUrl &)>;

/// Turns the body of the image service's answer into a picture or an error, whatever its HTTP status was.
/// Never throws. `readResource` is asked for the picture when the answer only names its address. Any thread.
GenerationResult parseResponse(const QByteArray &body, const ResourceReader &readResource);

} // namespace quilmora
