#pragma once

#include "local_service/cover/CoverPrompt.h"

#include <QString>

/// Reading of prompts.
namespace quilmora::promptReader
{

/// Takes the prompt apart by the headings that Quilmora writes. A prompt without any of them is taken as a
/// description of the scene as a whole.
CoverPrompt read(const QString &prompt);

} // namespace quilmora::promptReader
