#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

namespace quilmora
{

/// A request for one picture that has passed every check.
struct PictureRequest {
    /// How the answer carries the picture.
    enum class Delivery { Address, Base64 };

    QString model;
    QString prompt;
    QSize size{2048, 2048};
    Delivery delivery = Delivery::Address;
    bool watermark = true;
    QList<QImage> images; ///< Decoded reference pictures in the order sent: the face, then the style.
};

} // namespace quilmora
