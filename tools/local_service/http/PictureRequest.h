#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

namespace quilmora::localservice {

/// A request for one picture that has passed every check.
struct PictureRequest {
    QString model;
    QString prompt;
    QSize size{2048, 2048};
    bool inBase64 = false; ///< Whether the answer carries the picture itself, not its address.
    bool watermark = true;
    QList<QImage> images; ///< Decoded reference pictures in the order sent: the face, then the style.
};

} // namespace quilmora::localservice
