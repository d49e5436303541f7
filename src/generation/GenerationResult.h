#pragma once

#include "generation/GenError.h"

#include <QImage>
#include <QString>

#include <functional>
#include <variant>

namespace quilmora {

/// A failure of the connection itself, in the platform's own words.
struct TransportError {
    QString description;
};

/// The outcome of one generation: the picture or one of the two kinds of error.
using GenerationResult = std::variant<QImage, GenError, TransportError>;

using GenerationCompletion = std::function<void(const GenerationResult &)>;

/// The text for the user of a failed result; empty for a picture.
QString localizedDescription(const GenerationResult &result);

} // namespace quilmora
