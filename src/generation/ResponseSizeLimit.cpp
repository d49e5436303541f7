#include "generation/ResponseSizeLimit.h"

#include <QNetworkReply>
#include <QVariant>

namespace quilmora::responseSizeLimit {
namespace {

/// Marks a reply that was given up; QNetworkAccessManager cannot be told why it is to abort.
constexpr const char *mark = "exceedsResponseSizeLimit";

void check(QNetworkReply &reply, qint64 bytes)
{
    if (bytes > maximumBytes && reply.error() == QNetworkReply::NoError) {
        reply.setProperty(mark, true);
        reply.abort();
    }
}

} // namespace

void apply(QNetworkReply &reply)
{
    QObject::connect(&reply, &QNetworkReply::metaDataChanged, &reply, [&reply] {
        check(reply, reply.header(QNetworkRequest::ContentLengthHeader).toLongLong());
    });
    QObject::connect(&reply, &QNetworkReply::readyRead, &reply,
                     [&reply] { check(reply, reply.bytesAvailable()); });
}

bool isExceeded(const QNetworkReply &reply)
{
    return reply.property(mark).toBool();
}

} // namespace quilmora::responseSizeLimit
