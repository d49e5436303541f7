#include "generation/HttpSession.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

QNetworkRequest networkRequest(const HttpSession::Request &request, std::chrono::milliseconds idleLimit)
{
    QNetworkRequest prepared{request.url};
    prepared.setRawHeader("Authorization", request.authorization);
    prepared.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Qt would send the key to the redirect's target, and sometimes fail to rewind the body.
    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // A challenge is a response to show; cached credentials must not replace the key.
    prepared.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    prepared.setTransferTimeout(static_cast<int>(idleLimit.count()));
    return prepared;
}

} // namespace

qint64 NonRewindableBody::readData(char *data, qint64 maximum)
{
    const qint64 count = std::min<qint64>(maximum, m_body.size() - pos());
    std::copy_n(m_body.constData() + pos(), count, data);
    return count;
}

void HttpSession::send(Method method, const Request &request, int redirectsLeft, const Done &done)
{
    // A shared one would send at most six requests at once, and reuse connections that may be closed.
    auto *manager = new QNetworkAccessManager{this};
    QNetworkRequest prepared = networkRequest(request, m_idleLimit);
    QNetworkReply *reply = nullptr;
    if (method == Method::get) {
        reply = manager->get(prepared);
    } else {
        prepared.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
        auto *upload = new NonRewindableBody{request.body};
        reply = manager->post(prepared, upload);
        upload->setParent(reply);
    }
    responseSizeLimit::apply(*reply);
    connect(reply, &QNetworkReply::finished, this, [=, this] {
        const auto next = readRedirect(*reply);
        if (const auto *error = std::get_if<TransportError>(&next)) {
            done(*error);
        } else if (const auto *redirect = std::get_if<Redirect>(&next)) {
            if (redirectsLeft > 0) {
                const Method nextMethod = redirect->withBody ? method : Method::get;
                send(nextMethod, {redirect->target, request.authorization, request.body}, redirectsLeft - 1,
                     done);
            } else {
                done(TransportError{QCoreApplication::translate("QHttp", "Too many redirects")});
            }
        } else {
            done(classifyReply(*reply));
        }
        reply->deleteLater();
        manager->deleteLater();
    });
}

} // namespace quilmora
