#pragma once

#include <QString>

namespace quilmora::localservice {

/// What a prompt asks of a cover. Each text is empty when the prompt does not speak of it.
struct PromptParts {
    QString title;      ///< The words to set on the cover.
    QString scene;      ///< What the background shows.
    QString expression; ///< The presenter's expression.
    QString style;      ///< Further wishes.

    /// Takes the prompt apart by the headings that Quilmora writes. A prompt without any of them is taken as
    /// a description of the scene as a whole.
    static PromptParts of(const QString &prompt);
};

} // namespace quilmora::localservice
