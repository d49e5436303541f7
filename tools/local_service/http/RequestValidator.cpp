#include "local_service/http/RequestValidator.h"

#include "local_service/http/DataUrl.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

using Problem = std::optional<ErrorEnvelope>;

Problem bad(const QString &param, const QString &reason)
{
    return ErrorEnvelope::invalidParameter(param, reason);
}

Problem readText(const QJsonObject &body, const QString &name, QString &target)
{
    const QJsonValue value = body.value(name);
    if (value.isUndefined()) {
        return bad(name, u"it is required"_s);
    }
    if (!value.isString()) {
        return bad(name, u"it must be a string"_s);
    }
    target = value.toString();
    return target.isEmpty() ? bad(name, u"it must not be empty"_s) : std::nullopt;
}

Problem readSize(const QJsonObject &body, QSize &target)
{
    const QString name = u"size"_s;
    const QJsonValue value = body.value(name);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    static const QRegularExpression pattern{u"\\A([1-9][0-9]{0,5})x([1-9][0-9]{0,5})\\z"_s};
    const QRegularExpressionMatch match = pattern.match(value.toString());
    if (!value.isString() || !match.hasMatch()) {
        return bad(name, u"it must be a text like 2048x2048"_s);
    }
    const qint64 width = match.captured(1).toLongLong();
    const qint64 height = match.captured(2).toLongLong();
    if (width * height < RequestValidator::smallestArea || width * height > RequestValidator::largestArea) {
        return bad(name, u"image size must be between %1 and %2 pixels"_s.arg(RequestValidator::smallestArea)
                             .arg(RequestValidator::largestArea));
    }
    if (std::max(width, height) > RequestValidator::largestRatio * std::min(width, height)) {
        return bad(name, u"aspect ratio must be between 1/16 and 16"_s);
    }
    target = {static_cast<int>(width), static_cast<int>(height)};
    return std::nullopt;
}

/// Sets `target` to the index of the member's value within `allowed`; an absent member leaves it alone.
Problem readChoice(const QJsonObject &body, const QString &name, const std::array<QString, 2> &allowed,
                   std::size_t &target)
{
    const QJsonValue value = body.value(name);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    const auto found = std::find(allowed.begin(), allowed.end(), value.toString());
    if (!value.isString() || found == allowed.end()) {
        return bad(name, u"it must be one of %1 and %2"_s.arg(allowed[0], allowed[1]));
    }
    target = static_cast<std::size_t>(found - allowed.begin());
    return std::nullopt;
}

Problem readWatermark(const QJsonObject &body, bool &target)
{
    const QString name = u"watermark"_s;
    const QJsonValue value = body.value(name);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isBool()) {
        return bad(name, u"it must be a boolean"_s);
    }
    target = value.toBool();
    return std::nullopt;
}

Problem readImages(const QJsonObject &body, QList<QImage> &target)
{
    const QString name = u"image"_s;
    const QJsonValue value = body.value(name);
    if (value.isUndefined()) {
        return std::nullopt;
    }
    if (!value.isString() && !value.isArray()) {
        return bad(name, u"it must be a string or an array of strings"_s);
    }
    const QJsonArray list = value.isArray() ? value.toArray() : QJsonArray{value};
    if (list.isEmpty() || list.size() > RequestValidator::mostImages) {
        return bad(name, u"there must be 1 to %1 images"_s.arg(RequestValidator::mostImages));
    }
    for (const auto &item : list) {
        const QImage picture = item.isString() ? dataUrl::decodePicture(item.toString()) : QImage{};
        if (picture.isNull()) {
            return bad(name, u"each image must be a PNG or JPEG picture as a base64 data URL"_s);
        }
        target.append(picture);
    }
    return std::nullopt;
}

Problem findUnknownMember(const QJsonObject &body)
{
    static const QStringList known{u"model"_s,     u"prompt"_s,
                                   u"size"_s,      u"response_format"_s,
                                   u"watermark"_s, u"sequential_image_generation"_s,
                                   u"image"_s};
    const QStringList names = body.keys();
    for (const QString &name : names) {
        if (!known.contains(name)) {
            return bad(name, u"there is no such parameter"_s);
        }
    }
    return std::nullopt;
}

Problem readMembers(const QJsonObject &body, PictureRequest &request)
{
    auto delivery = static_cast<std::size_t>(request.delivery);
    std::size_t sequence = 0;
    Problem problem = findUnknownMember(body);
    const auto then = [&problem](auto &&check) {
        if (!problem) {
            problem = check();
        }
    };
    then([&] { return readText(body, u"model"_s, request.model); });
    then([&] { return readText(body, u"prompt"_s, request.prompt); });
    then([&] { return readSize(body, request.size); });
    then([&] { return readChoice(body, u"response_format"_s, {u"url"_s, u"b64_json"_s}, delivery); });
    then([&] { return readWatermark(body, request.watermark); });
    then([&] {
        return readChoice(body, u"sequential_image_generation"_s, {u"disabled"_s, u"auto"_s}, sequence);
    });
    then([&] { return readImages(body, request.images); });
    request.delivery = static_cast<PictureRequest::Delivery>(delivery);
    return problem;
}

} // namespace

RequestValidator::RequestValidator(QStringList models) : m_models{std::move(models)} {}

RequestValidator::Outcome RequestValidator::validate(const QByteArray &body) const
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return ErrorEnvelope::invalidParameter({}, u"the body is not JSON"_s);
    }
    if (!document.isObject()) {
        return ErrorEnvelope::invalidParameter({}, u"the body must be a JSON object"_s);
    }
    PictureRequest request;
    if (const Problem problem = readMembers(document.object(), request)) {
        return *problem;
    }
    if (!m_models.contains(request.model)) {
        return ErrorEnvelope::unknownModel(request.model);
    }
    return request;
}

} // namespace quilmora
