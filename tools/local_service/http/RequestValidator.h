#pragma once

#include "local_service/http/ErrorEnvelope.h"
#include "local_service/http/PictureRequest.h"

#include <QByteArray>
#include <QStringList>

#include <variant>

namespace quilmora
{

/// Checks the body of a generation request as strictly as the image service's public interface is written.
/// Holds no state beyond the models; may be used from several threads at once.
class RequestValidator final
{
public:
    using Outcome = std::variant<PictureRequest, ErrorEnvelope>;

    static constexpr qint64 smallestArea = 921'600;   ///< Pixels, itself allowed.
    static constexpr qint64 largestArea = 16'777'216; ///< Pixels, itself allowed.
    static constexpr qint64 largestRatio = 16;        ///< Longer side to shorter side, itself allowed.
    static constexpr qsizetype mostImages = 14;       ///< Reference pictures in one request.

    /// `models` are the identifiers that requests may name.
    explicit RequestValidator(QStringList models);

    /// The checked request, or the first error found: the JSON, then the members in the order of the public
    /// interface (unknown ones first), then whether the model is known.
    Outcome validate(const QByteArray &body) const;

private:
    QStringList m_models;
};

} // namespace quilmora
