#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

namespace quilmora {

/// One request of the image service.
struct GenerationRequest {
    QString prompt;
    qint64 width;  ///< In pixels.
    qint64 height; ///< In pixels.
    QList<QImage> referenceImages;
    QString modelID;
};

/// The request as compact JSON. Pictures go in as data URLs of PNG files, in their order: a single one as a
/// string, more as an array; those that cannot be encoded are left out. Encodes every picture on the calling
/// thread.
QByteArray encodeRequestBody(const GenerationRequest &request);

} // namespace quilmora
