#include "local_service/http/ErrorEnvelope.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quilmora::localservice {

ErrorEnvelope ErrorEnvelope::invalidParameter(const QString &param, const QString &reason)
{
    const QString message =
        param.isEmpty()
            ? u"The request is not valid: %1."_s.arg(reason)
            : u"The parameter `%1` specified in the request is not valid: %2."_s.arg(param, reason);
    return {400, u"InvalidParameter"_s, message, param, u"BadRequest"_s};
}

ErrorEnvelope ErrorEnvelope::ofStatus(int status)
{
    if (status == 413) {
        return {
            status, u"RequestTooLarge"_s, u"The body of the request is too large."_s, {}, u"BadRequest"_s};
    }
    if (status >= 500) {
        const QString message = u"The service failed to answer the request."_s;
        return {status, u"InternalServiceError"_s, message, {}, u"InternalServerError"_s};
    }
    return {status, u"BadRequest"_s, u"The request could not be understood."_s, {}, u"BadRequest"_s};
}

QByteArray ErrorEnvelope::toJson(const QString &requestId) const
{
    const QString text = message + u" Request id: "_s + requestId;
    const QJsonObject error{{u"code"_s, code}, {u"message"_s, text}, {u"param"_s, param}, {u"type"_s, type}};
    return QJsonDocument{QJsonObject{{u"error"_s, error}}}.toJson(QJsonDocument::Compact);
}

} // namespace quilmora::localservice
