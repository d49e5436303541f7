#pragma once

#include "local_service/cover/PromptParts.h"
#include "local_service/scenes/Canvas.h"

#include <QSize>
#include <QStringView>

namespace quilmora::localservice {

/// One kind of background. There are three; a prompt gets the one that is nearest to its words.
struct Backdrop {
    Palette palette; ///< The colours that go with it.
    /// Covers the whole canvas; comes out blurred.
    void (*farPart)(Canvas &canvas);
    /// What stands in focus, over the far part.
    void (*nearPart)(Canvas &canvas);
    QStringView words; ///< What calls for it in a prompt.

    /// A neon plain under a dark sky.
    static const Backdrop tech;
    /// A stately office at dusk: tall windows over a skyline, warm wood and lamps.
    static const Backdrop office;
    /// A beach in the sun: sky, sea, sand and palm leaves.
    static const Backdrop beach;

    /// The one whose words the scene names first, else the style. Where neither names any, the text decides,
    /// so that a prompt always gets the same.
    static const Backdrop &forPrompt(const PromptParts &prompt);

    /// Paints over a whole cover of `size`; the light comes from `focus`.
    void paint(QPainter &cover, QSize size, QPointF focus, const Palette &colors) const;
};

} // namespace quilmora::localservice
