#pragma once

#include "model/CoverSize.h"
#include "model/Emotion.h"

#include <QImage>
#include <QString>

namespace quilmora {

/// What the user chose and typed for one cover.
struct CoverInputs {
    CoverSize selectedSize;
    QString titleText;
    QString sceneText; ///< What the background should show.
    Emotion selectedEmotion;
    QString customEmotion; ///< Counts only while the custom expression is selected.
    QImage faceImage;      ///< Photo of the presenter; null for none.
    QImage styleImage;     ///< Sample cover; null for none.
    QString advancedText;  ///< Further style instructions.
};

} // namespace quilmora
