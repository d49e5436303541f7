#pragma once

#include <QString>

namespace quilmora {

/// How to reach the image service; the user edits these on the settings screen.
struct VolcengineConfig {
    QString apiURL;  ///< Full address of the image-generation endpoint.
    QString apiKey;  ///< Bearer key; may be empty.
    QString modelID; ///< Model identifier sent in each request.

    /// The provider's public endpoint.
    static const QString &defaultURL();
    static const QString &defaultModelID();
};

} // namespace quilmora
