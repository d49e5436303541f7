#pragma once

#include <QString>

namespace quilmora
{

/// What a prompt asks of a cover. Each text is empty when the prompt does not speak of it.
struct CoverPrompt {
    QString title;      ///< The words to set on the cover.
    QString scene;      ///< What the background shows.
    QString expression; ///< The presenter's expression.
    QString style;      ///< Further wishes.
};

} // namespace quilmora
