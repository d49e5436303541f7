#pragma once

#include <QString>

namespace quilmora {

struct CoverInputs;

/// The prompt that describes the wanted cover to the image service.
QString composePrompt(const CoverInputs &inputs);

/// `text` without blanks (of any kind, the full-width one too) and tabs at both ends; line breaks stay.
QString withoutOuterBlanks(const QString &text);

} // namespace quilmora
