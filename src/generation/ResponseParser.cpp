#include "generation/ResponseParser.h"

#include "platform/ImageCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringDecoder>
#include <QTextBoundaryFinder>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// How much of a body that lacks its pictures is shown, in user-perceived characters.
constexpr int excerptCharacters = 500;

std::optional<QString> asUtf8(const QByteArray &body)
{
    // Stateless, so that a character cut off at the end counts as an error too.
    QStringDecoder decoder{QStringDecoder::Utf8, QStringDecoder::Flag::Stateless};
    QString text = decoder(body);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    return text;
}

QString firstCharacters(const QString &text, int count)
{
    QTextBoundaryFinder boundaries{QTextBoundaryFinder::Grapheme, text};
    for (int character = 0; character < count; ++character) {
        if (boundaries.toNextBoundary() < 0) {
            return text;
        }
    }
    return text.first(boundaries.position());
}

QString textOr(const QJsonValue &value, const QString &fallback)
{
    return value.isString() ? value.toString() : fallback;
}

/// Standard base64 as it stands, with no blanks and with its padding; nothing when it is anything else.
std::optional<QByteArray> decodeBase64(const QString &text)
{
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    const auto decoded = QByteArray::fromBase64Encoding(
        text.toLatin1(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        return std::nullopt;
    }
    return *decoded;
}

QImage imageAtUrl(const QString &text, const ResourceReader &readResource)
{
    const QUrl url{text, QUrl::StrictMode};
    if (text.isEmpty() || !url.isValid()) {
        return {};
    }
    const std::optional<QByteArray> bytes = readResource(url);
    return bytes ? imageCodec::decode(*bytes) : QImage{};
}

GenerationResult parseFirstElement(const QJsonObject &element, const ResourceReader &readResource)
{
    if (const QJsonValue error = element[u"error"_s]; error.isObject()) {
        return GenError::serverError(textOr(error[u"message"_s], u"图片生成失败"_s));
    }
    if (const QJsonValue encoded = element[u"b64_json"_s]; encoded.isString()) {
        const std::optional<QByteArray> bytes = decodeBase64(encoded.toString());
        if (const QImage image = bytes ? imageCodec::decode(*bytes) : QImage{}; !image.isNull()) {
            return image;
        }
    }
    if (const QJsonValue url = element[u"url"_s]; url.isString()) {
        if (const QImage image = imageAtUrl(url.toString(), readResource); !image.isNull()) {
            return image;
        }
    }
    return GenError{GenError::Case::parseFailed};
}

/// Whether `data` is an array of objects with at least one element; one other element spoils it.
bool holdsElements(const QJsonValue &data)
{
    const QJsonArray elements = data.toArray();
    return !elements.isEmpty() &&
           std::all_of(elements.begin(), elements.end(), [](const auto &value) { return value.isObject(); });
}

} // namespace

GenerationResult parseResponse(const QByteArray &body, const ResourceReader &readResource)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject()) {
        return GenError::serverError(asUtf8(body).value_or(u"无法解析响应"_s));
    }
    const QJsonObject answer = document.object();
    if (const QJsonValue error = answer[u"error"_s]; error.isObject()) {
        return GenError::serverError(u'[' + textOr(error[u"code"_s], {}) + u"] "_s +
                                     textOr(error[u"message"_s], u"未知错误"_s));
    }
    const QJsonValue data = answer[u"data"_s];
    if (!holdsElements(data)) {
        const QString text = asUtf8(body).value_or(u"未知响应"_s);
        return GenError::serverError(u"响应缺少 data 字段："_s + firstCharacters(text, excerptCharacters));
    }
    return parseFirstElement(data.toArray().first().toObject(), readResource);
}

} // namespace quilmora
