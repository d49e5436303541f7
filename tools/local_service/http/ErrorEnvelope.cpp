#include "local_service/http/ErrorEnvelope.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quilmora
{

ErrorEnvelope ErrorEnvelope::invalidParameter(const QString &param, const QString &reason)
{
    const QString message =
        param.isEmpty()
            ? u"The request is not valid: %1."_s.arg(reason)
            : u"The parameter `%1` specified in the request is not valid: %2."_s.arg(param, reason);
    return {400, u"InvalidParameter"_s, message, param, u"BadRequest"_s};
}

ErrorEnvelope ErrorEnvelope::wrongKey()
{
    return {401,
            u"AuthenticationError"_s,
            u"The API key in the request is missing or invalid."_s,
            {},
            u"Unauthorized"_s};
}

ErrorEnvelope ErrorEnvelope::unknownModel(const QString &model)
{
    return {404,
            u"InvalidEndpointOrModel.NotFound"_s,
            u"The model or endpoint %1 does not exist or you do not have access to it."_s.arg(model),
            {},
            u"NotFound"_s};
}

ErrorEnvelope ErrorEnvelope::unknownPath(const QString &path)
{
    return {404, u"NotFound"_s, u"There is nothing at the path %1."_s.arg(path), {}, u"NotFound"_s};
}

ErrorEnvelope ErrorEnvelope::wrongMethod(const QString &method)
{
    return {405,
            u"MethodNotAllowed"_s,
            u"The method %1 is not allowed for this path."_s.arg(method),
            {},
            u"MethodNotAllowed"_s};
}

ErrorEnvelope ErrorEnvelope::shuttingDown()
{
    return {503, u"ServiceUnavailable"_s, u"The service is shutting down."_s, {}, u"ServiceUnavailable"_s};
}

ErrorEnvelope ErrorEnvelope::ofStatus(int status)
{
    if (status == 413) {
        return {413, u"RequestTooLarge"_s, u"The body of the request is too large."_s, {}, u"BadRequest"_s};
    }
    if (status >= 500) {
        return {status,
                u"InternalServiceError"_s,
                u"The service failed to answer the request."_s,
                {},
                u"InternalServerError"_s};
    }
    return {status, u"BadRequest"_s, u"The request could not be understood."_s, {}, u"BadRequest"_s};
}

QByteArray ErrorEnvelope::toJson(const QString &requestId) const
{
    const QString text = message + u" Request id: "_s + requestId;
    const QJsonObject error{{u"code"_s, code}, {u"message"_s, text}, {u"param"_s, param}, {u"type"_s, type}};
    return QJsonDocument{QJsonObject{{u"error"_s, error}}}.toJson(QJsonDocument::Compact);
}

} // namespace quilmora
