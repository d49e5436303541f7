#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

namespace quilmora {

struct CoverInputs;

/// The prompt that describes the wanted cover to the image service.
QString composePrompt(const CoverInputs &inputs);

/// `text` without blanks (of any kind, the full-width one too) and tabs at both ends; line breaks stay.
QString withoutOuterBlanks(const QString &text);

/// One request of the image service.
struct GenerationRequest {
    QString prompt;
    qint64 width;  ///< In pixels.
    qint64 height; ///< In pixels.
    QList<QImage> referenceImages;
    QString modelID;
};

/// The request as compact JSON, with the pictures as data URLs of PNG files: a single one as a string, more
/// as an array; those that cannot be encoded are left out. Encodes them on the calling thread.
QByteArray encodeRequestBody(const GenerationRequest &request);

} // namespace quilmora
