#pragma once

#include <QImage>
#include <QString>

#include <variant>

namespace quilmora {

/// How far the generation on the generate screen has come; match it with std::visit or std::get_if.
namespace generationState {

struct Idle {
};

struct Generating {
};

struct Success {
    QImage image;
};

struct Failure {
    QString message; ///< Shown to the user as it is.
};

} // namespace generationState

using CoverGenerationState = std::variant<generationState::Idle, generationState::Generating,
                                          generationState::Success, generationState::Failure>;

} // namespace quilmora
