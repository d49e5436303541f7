#include "generation/HttpSession.h"

#include "generation/NonRewindableBody.h"
#include "generation/ResponseSizeLimit.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int maximumRedirects = 10;

QNetworkRequest networkRequest(const HttpSession::Request &request, std::chrono::milliseconds idleLimit)
{
    QNetworkRequest prepared{request.url};
    prepared.setRawHeader("Authorization", request.authorization);
    prepared.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Followed by itself, a redirect would take the key along, and at times trip over rewinding the body.
    prepared.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // A challenge is an answer to show; it must not bring other credentials in the key's place.
    prepared.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    prepared.setTransferTimeout(static_cast<int>(idleLimit.count()));
    return prepared;
}

} // namespace

HttpSession::HttpSession(std::chrono::milliseconds limit) : m_idleLimit{limit} {}

void HttpSession::post(const Request &request, const Done &done)
{
    send(Method::post, request, maximumRedirects, done);
}

void HttpSession::send(Method method, const Request &request, int redirectsLeft, const Done &done)
{
    // One for each request. Shared, it would let no more than six of them run at once, with the clock of the
    // others ticking, and send them over kept connections, which may have died unnoticed.
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
