#include "local_service/http/GenerationHandler.h"

#include "local_service/cover/CoverComposer.h"
#include "local_service/http/RequestRules.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::localservice {
namespace {

constexpr int jpegQuality = 92;
/// Pictures kept to be fetched by address; older ones are forgotten.
constexpr qsizetype mostPictures = 64;

} // namespace

GenerationHandler::Reply GenerationHandler::handle(const Incoming &incoming)
{
    const Clock::time_point arrival = Clock::now();
    const auto change = [this](int requests, int underWay) {
        const std::scoped_lock lock{m_mutex};
        m_counts.requests += requests;
        m_counts.underWay += underWay;
        m_counts.mostAtOnce = std::max(m_counts.mostAtOnce, m_counts.underWay);
    };
    change(1, 1);
    const auto end = qScopeGuard([&change] { change(0, -1); });
    if (incoming.authorization != "Bearer " + m_options.key.toUtf8()) {
        const QString message = u"The API key in the request is missing or invalid."_s;
        return refuse({401, u"AuthenticationError"_s, message, {}, u"Unauthorized"_s});
    }
    if (incoming.contentType.split(';').constFirst().trimmed().toLower() != "application/json") {
        return refuse(ErrorEnvelope::invalidParameter({}, u"Content-Type must be application/json"_s));
    }
    const auto outcome = requestRules::check(incoming.body, m_options.models);
    if (const auto *error = std::get_if<ErrorEnvelope>(&outcome)) {
        return refuse(*error);
    }
    return answer(std::get<PictureRequest>(outcome), arrival);
}

GenerationHandler::Reply GenerationHandler::refuse(const ErrorEnvelope &error)
{
    const auto stamp = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch());
    const std::scoped_lock lock{m_mutex};
    const QString id = u"%1%2"_s.arg(stamp, 16, 10, '0'_L1).arg(m_nextId++, 16, 16, '0'_L1);
    return {error.status, error.toJson(id)};
}

GenerationHandler::Reply GenerationHandler::answer(const PictureRequest &request, Clock::time_point arrival)
{
    QByteArray jpeg;
    QBuffer buffer{&jpeg};
    if (!coverComposer::compose(request).save(&buffer, "jpeg", jpegQuality)) {
        return refuse(ErrorEnvelope::ofStatus(500));
    }
    if (!waitUntil(arrival + m_options.delay)) {
        const QString code = u"ServiceUnavailable"_s;
        return refuse({503, code, u"The service is shutting down."_s, {}, code});
    }
    const QString size = u"%1x%2"_s.arg(request.size.width()).arg(request.size.height());
    QJsonObject picture{{u"size"_s, size}};
    if (request.inBase64) {
        picture.insert(u"b64_json"_s, QString::fromLatin1(jpeg.toBase64()));
    } else {
        picture.insert(u"url"_s, QString{m_pictureAddress + keep(jpeg) + u".jpg"_s});
    }
    const qint64 tokens = qint64{request.size.width()} * request.size.height() / 256;
    const QJsonObject usage{
        {u"generated_images"_s, 1}, {u"output_tokens"_s, tokens}, {u"total_tokens"_s, tokens}};
    const QJsonObject body{{u"model"_s, request.model},
                           {u"created"_s, QDateTime::currentSecsSinceEpoch()},
                           {u"data"_s, QJsonArray{picture}},
                           {u"usage"_s, usage}};
    Reply reply{200, QJsonDocument{body}.toJson(QJsonDocument::Compact)};
    const std::scoped_lock lock{m_mutex};
    ++m_counts.answered;
    return reply;
}

bool GenerationHandler::waitUntil(Clock::time_point moment)
{
    std::unique_lock lock{m_mutex};
    return !m_wake.wait_until(lock, moment, [this] { return m_shutDown; });
}

void GenerationHandler::shutDown()
{
    {
        const std::scoped_lock lock{m_mutex};
        m_shutDown = true;
    }
    m_wake.notify_all();
}

/// Keeps `picture` and returns its name, which is made from its bytes.
QString GenerationHandler::keep(const QByteArray &picture)
{
    const QByteArray hash = QCryptographicHash::hash(picture, QCryptographicHash::Sha256);
    QString name = QString::fromLatin1(hash.toHex());
    const std::scoped_lock lock{m_mutex};
    m_pictureNames.removeOne(name);
    m_pictureNames.append(name);
    m_pictures.insert(name, picture);
    if (m_pictureNames.size() > mostPictures) {
        m_pictures.remove(m_pictureNames.takeFirst());
    }
    return name;
}

QByteArray GenerationHandler::picture(const QString &name) const
{
    const std::scoped_lock lock{m_mutex};
    return m_pictures.value(name);
}

GenerationHandler::Counts GenerationHandler::counts() const
{
    const std::scoped_lock lock{m_mutex};
    return m_counts;
}

} // namespace quilmora::localservice
