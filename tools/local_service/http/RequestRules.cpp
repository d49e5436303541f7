#include "local_service/http/RequestRules.h"

#include "imaging/ImageCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::localservice::requestRules {
namespace {

// Each limit is itself allowed.
constexpr qint64 smallestArea = 921'600; ///< In pixels.
constexpr qint64 largestArea = 16'777'216;
constexpr qint64 largestRatio = 16; ///< Longer side to shorter side.
constexpr qsizetype mostImages = 14;

// The functions that read a member return what is wrong with it.

QString readText(const QJsonValue &value, QString &target)
{
    if (value.isUndefined()) {
        return u"it is required"_s;
    }
    if (!value.isString()) {
        return u"it must be a string"_s;
    }
    target = value.toString();
    return target.isEmpty() ? u"it must not be empty"_s : QString{};
}

QString readSize(const QJsonValue &value, QSize &target)
{
    static const QRegularExpression pattern{u"\\A([1-9][0-9]{0,5})x([1-9][0-9]{0,5})\\z"_s};
    const QRegularExpressionMatch match = pattern.match(value.toString());
    if (!match.hasMatch()) {
        return u"it must be a text like 2048x2048"_s;
    }
    const qint64 width = match.captured(1).toLongLong();
    const qint64 height = match.captured(2).toLongLong();
    if (width * height < smallestArea || width * height > largestArea) {
        return u"image size must be between %1 and %2 pixels"_s.arg(smallestArea).arg(largestArea);
    }
    if (std::max(width, height) > largestRatio * std::min(width, height)) {
        return u"aspect ratio must be between 1/16 and 16"_s;
    }
    target = {static_cast<int>(width), static_cast<int>(height)};
    return {};
}

QString readChoice(const QJsonValue &value, const QString &first, const QString &second)
{
    const bool known = value.isString() && (value.toString() == first || value.toString() == second);
    return known ? QString{} : u"it must be one of %1 and %2"_s.arg(first, second);
}

/// The picture inside "data:image/png;base64,…" or "data:image/jpeg;base64,…". Null when the text has another
/// form, the base64 is not strict (blanks, line breaks, missing padding) or the bytes are not of that kind.
QImage decodeDataUrl(const QString &text)
{
    static const std::pair<QLatin1StringView, QByteArrayView> kinds[] = {
        {"data:image/png;base64,"_L1, "\x89PNG\r\n\x1A\n"}, {"data:image/jpeg;base64,"_L1, "\xFF\xD8\xFF"}};
    for (const auto &[prefix, firstBytes] : kinds) {
        if (text.startsWith(prefix)) {
            const QByteArray base64 = QStringView{text}.sliced(prefix.size()).toLatin1();
            const auto decoded =
                QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
            const bool strict = base64.size() % 4 == 0 && decoded && (*decoded).startsWith(firstBytes);
            return strict ? imageCodec::decode(*decoded) : QImage{};
        }
    }
    return {};
}

QString readImages(const QJsonValue &value, QList<QImage> &target)
{
    if (!value.isString() && !value.isArray()) {
        return u"it must be a string or an array of strings"_s;
    }
    const QJsonArray list = value.isArray() ? value.toArray() : QJsonArray{value};
    if (list.isEmpty() || list.size() > mostImages) {
        return u"there must be 1 to %1 images"_s.arg(mostImages);
    }
    for (const auto &item : list) {
        target.append(item.isString() ? decodeDataUrl(item.toString()) : QImage{});
        if (target.last().isNull()) {
            return u"each image must be a PNG or JPEG picture as a base64 data URL"_s;
        }
    }
    return {};
}

QString readMember(const QString &name, const QJsonValue &value, PictureRequest &request)
{
    if (name == u"model"_s || name == u"prompt"_s) {
        return readText(value, name == u"model"_s ? request.model : request.prompt);
    }
    if (value.isUndefined()) {
        return {};
    }
    if (name == u"size"_s) {
        return readSize(value, request.size);
    }
    if (name == u"response_format"_s) {
        request.inBase64 = value == u"b64_json"_s;
        return readChoice(value, u"url"_s, u"b64_json"_s);
    }
    if (name == u"watermark"_s) {
        request.watermark = value.toBool();
        return value.isBool() ? QString{} : u"it must be a boolean"_s;
    }
    if (name == u"sequential_image_generation"_s) {
        return readChoice(value, u"disabled"_s, u"auto"_s);
    }
    return readImages(value, request.images);
}

} // namespace

std::variant<PictureRequest, ErrorEnvelope> check(const QByteArray &body, const QStringList &models)
{
    static const QStringList known =
        u"model prompt size response_format watermark sequential_image_generation image"_s.split(u' ');
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        return ErrorEnvelope::invalidParameter({}, u"the body is not JSON"_s);
    }
    if (!document.isObject()) {
        return ErrorEnvelope::invalidParameter({}, u"the body must be a JSON object"_s);
    }
    const QStringList names = document.object().keys();
    for (const QString &name : names) {
        if (!known.contains(name)) {
            return ErrorEnvelope::invalidParameter(name, u"there is no such parameter"_s);
        }
    }
    PictureRequest request;
    for (const QString &name : known) {
        const QString reason = readMember(name, document[name], request);
        if (!reason.isEmpty()) {
            return ErrorEnvelope::invalidParameter(name, reason);
        }
    }
    if (!models.contains(request.model)) {
        const QString message = u"The model or endpoint %1 does not exist or you do not have access to it."_s;
        const QString code = u"InvalidEndpointOrModel.NotFound"_s;
        return ErrorEnvelope{404, code, message.arg(request.model), {}, u"NotFound"_s};
    }
    return request;
}

} // namespace quilmora::localservice::requestRules
