#pragma once

#include "local_service/http/ErrorEnvelope.h"
#include "local_service/http/PictureRequest.h"

#include <QByteArray>
#include <QStringList>

#include <variant>

/// What a generation request may say, as strictly as the image service's public interface is written.
namespace quilmora::localservice::requestRules {

/// The checked request, or the first error found in `body`: the JSON, then the members in the order of the
/// public interface (unknown ones first), then whether the model is one of `models`. Thread-safe.
std::variant<PictureRequest, ErrorEnvelope> check(const QByteArray &body, const QStringList &models);

} // namespace quilmora::localservice::requestRules
