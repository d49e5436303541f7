#pragma once

#include <QString>

namespace quilmora {

/// The settings of the image service.
struct VolcengineConfig {
    QString apiURL;  ///< Full address of the image-generation endpoint.
    QString apiKey;  ///< Bearer key; may be empty.
    QString modelID; ///< Model identifier sent in each request.

    /// The provider's public endpoint.
    static QString defaultURL()
    {
        return QStringLiteral("https://ark.cn-beijing.volces.com/api/v3/images/generations");
    }
    static QString defaultModelID() { return QStringLiteral("doubao-seedream-4-0-250828"); }
};

} // namespace quilmora
