#include "local_service/http/GenerationHandler.h"

#include "local_service/cover/CoverComposer.h"

#include <QBuffer>
#include <QDateTime>
#include <QImageWriter>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int jpegQuality = 92;

QByteArray encodeJpeg(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer{&buffer, "jpeg"};
    writer.setQuality(jpegQuality);
    return writer.write(image) ? buffer.data() : QByteArray{};
}

bool isJson(const QByteArray &contentType)
{
    return contentType.split(';').constFirst().trimmed().toLower() == "application/json";
}

} // namespace

GenerationHandler::GenerationHandler(const LocalServiceOptions &options)
    : m_options{options},
      m_validator{options.models}
{
}

GenerationHandler::Reply GenerationHandler::handle(const Incoming &incoming)
{
    const Clock::time_point arrival = Clock::now();
    const ServiceCounters::Visit visit{m_counters};
    if (incoming.authorization != "Bearer " + m_options.key.toUtf8()) {
        return refuse(ErrorEnvelope::wrongKey());
    }
    if (!isJson(incoming.contentType)) {
        return refuse(ErrorEnvelope::invalidParameter({}, u"Content-Type must be application/json"_s));
    }
    const RequestValidator::Outcome outcome = m_validator.validate(incoming.body);
    if (const auto *error = std::get_if<ErrorEnvelope>(&outcome)) {
        return refuse(*error);
    }
    return answer(std::get<PictureRequest>(outcome), arrival);
}

GenerationHandler::Reply GenerationHandler::refuse(const ErrorEnvelope &error)
{
    const auto stamp = static_cast<quint64>(QDateTime::currentMSecsSinceEpoch());
    const QString id = u"%1%2"_s.arg(stamp, 16, 10, '0'_L1).arg(m_nextId++, 16, 16, '0'_L1);
    return {error.status, error.toJson(id)};
}

GenerationHandler::Reply GenerationHandler::answer(const PictureRequest &request, Clock::time_point arrival)
{
    const QByteArray jpeg = encodeJpeg(coverComposer::compose(request));
    if (jpeg.isEmpty()) {
        return refuse(ErrorEnvelope::ofStatus(500));
    }
    if (!waitUntil(arrival + m_options.delay)) {
        return refuse(ErrorEnvelope::shuttingDown());
    }
    const QString size = u"%1x%2"_s.arg(request.size.width()).arg(request.size.height());
    QJsonObject picture{{u"size"_s, size}};
    if (request.delivery == PictureRequest::Delivery::Base64) {
        picture.insert(u"b64_json"_s, QString::fromLatin1(jpeg.toBase64()));
    } else {
        picture.insert(u"url"_s, QString{m_pictureAddress + m_pictures.put(jpeg) + u".jpg"_s});
    }
    const qint64 tokens = qint64{request.size.width()} * request.size.height() / 256;
    const QJsonObject usage{
        {u"generated_images"_s, 1}, {u"output_tokens"_s, tokens}, {u"total_tokens"_s, tokens}};
    const QJsonObject body{{u"model"_s, request.model},
                           {u"created"_s, QDateTime::currentSecsSinceEpoch()},
                           {u"data"_s, QJsonArray{picture}},
                           {u"usage"_s, usage}};
    m_counters.countAnswer();
    return {200, QJsonDocument{body}.toJson(QJsonDocument::Compact)};
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

} // namespace quilmora
