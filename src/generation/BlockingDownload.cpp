#include "generation/BlockingDownload.h"

#include "generation/ReplyClassification.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QStringList>

#include <memory>

using namespace Qt::StringLiterals;

namespace quilmora {

std::optional<QByteArray> downloadBlocking(const QUrl &url, std::chrono::milliseconds idleLimit,
                                           const CancellationToken &cancellationToken)
{
    if (!QStringList{u"https"_s, u"http"_s, u"data"_s}.contains(url.scheme())) {
        return std::nullopt;
    }
    QEventLoop waiting;
    // Before isCancelled() is checked, so that no cancellation is missed.
    QObject::connect(&cancellationToken, &CancellationToken::cancelled, &waiting, &QEventLoop::quit);

    QNetworkAccessManager manager;
    QNetworkRequest request{url};
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setTransferTimeout(static_cast<int>(idleLimit.count()));
    const std::unique_ptr<QNetworkReply> reply{manager.get(request)};
    responseSizeLimit::apply(*reply);
    QObject::connect(reply.get(), &QNetworkReply::finished, &waiting, &QEventLoop::quit);
    if (!reply->isFinished() && !cancellationToken.isCancelled()) {
        waiting.exec();
    }
    if (!reply->isFinished() || reply->error() != QNetworkReply::NoError) {
        return std::nullopt;
    }
    return reply->readAll();
}

} // namespace quilmora
