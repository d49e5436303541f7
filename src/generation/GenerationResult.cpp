#include "generation/GenerationResult.h"

namespace quilmora {

QString localizedDescription(const GenerationResult &result)
{
    if (const auto *error = std::get_if<GenError>(&result)) {
        return error->errorDescription();
    }
    if (const auto *error = std::get_if<TransportError>(&result)) {
        return error->description;
    }
    return {};
}

} // namespace quilmora
