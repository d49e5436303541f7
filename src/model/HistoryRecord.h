#pragma once

#include "imaging/ImageCodec.h"
#include "model/PictureLimits.h"
#include "platform/Files.h"
#include "platform/Timestamp.h"

#include <QImage>
#include <QString>

namespace quilmora {

/// One generated cover of the history.
struct HistoryRecord {
    qint64 id; ///< Row id in the database; the record's identity.
    QString prompt;
    QString imagePath; ///< Path of the PNG file, normally in the form "~/…".
    Timestamp createdAt;
    QString modelID; ///< May be empty.

    /// The picture, read from its file at each call; null when it cannot be read.
    QImage image() const
    {
        return imageCodec::decodeFile(userFolders::expandTilde(imagePath), pictureLimits::file);
    }
};

} // namespace quilmora
