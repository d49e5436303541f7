#include "generation/BlockingDownload.h"

#include "generation/CancellationToken.h"
#include "generation/ResponseSizeLimit.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <memory>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

bool isReadable(const QUrl &url)
{
    return url.scheme() == u"https"_s || url.scheme() == u"http"_s || url.scheme() == u"data"_s;
}

} // namespace

std::optional<QByteArray> downloadBlocking(const QUrl &url, std::chrono::milliseconds idleLimit,
                                           const CancellationToken &cancellationToken)
{
    if (!isReadable(url)) {
        return std::nullopt;
    }
    QEventLoop waiting;
    // Connected before the look at isStopped(), so that a stop in between is not missed.
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
