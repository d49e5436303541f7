#pragma once

#include <QByteArray>
#include <QString>

namespace quilmora::localservice {

/// An error as the image service reports it: an HTTP status and a JSON body with one member "error".
struct ErrorEnvelope {
    int status = 500;
    QString code;
    QString message;
    QString param; ///< The request's member at fault, empty when there is none.
    QString type;

    /// 400: the member `param` is unknown, of a wrong type or has a bad value.
    static ErrorEnvelope invalidParameter(const QString &param, const QString &reason);
    /// Whatever the HTTP layer itself refused, for instance 413.
    static ErrorEnvelope ofStatus(int status);

    /// The compact JSON body; `requestId` ends the message, as with the provider.
    QByteArray toJson(const QString &requestId) const;
};

} // namespace quilmora::localservice
