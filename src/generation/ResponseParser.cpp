#include "generation/ResponseParser.h"

#include "imaging/ImageCodec.h"
#include "model/PictureLimits.h"

#include <QStringDecoder>
#include <QTextBoundaryFinder>

#include <simdjson.h>
#include <string_view>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

namespace dom = simdjson::dom;
using JsonValue = simdjson::simdjson_result<dom::element>;

/// How much of a body that lacks its pictures is shown, in user-perceived characters.
constexpr int excerptCharacters = 500;

/// A byte order mark at the start is kept, as any other character.
std::optional<QString> asUtf8(QByteArrayView bytes)
{
    // Stateless, so that a truncated character at the end is an error too.
    QStringDecoder decoder{QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom};
    QString text = decoder(bytes);
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

JsonValue parseJson(dom::parser &parser, const QByteArray &json)
{
    const bool lacksPadding = json.capacity() - json.size() < qsizetype{simdjson::SIMDJSON_PADDING};
    return parser.parse(json.constData(), static_cast<std::size_t>(json.size()), lacksPadding);
}

/// `json` with at most 18 digits of every number, as many as always fit into 64 bits: simdjson refuses longer
/// integers, though JSON has them.
QByteArray withShortNumbers(const QByteArray &json)
{
    constexpr int mostDigits = 18;
    QByteArray shortened;
    shortened.reserve(json.size());
    bool isInText = false;
    bool isEscaped = false;
    int digits = 0;
    for (const char character : json) {
        digits = character >= '0' && character <= '9' ? digits + 1 : 0;
        if (isInText || digits <= mostDigits) {
            shortened += character;
        }
        isInText ^= character == '"' && !isEscaped;
        isEscaped = character == '\\' && !isEscaped;
    }
    return shortened;
}

simdjson::simdjson_result<dom::object> parseObject(dom::parser &parser, const QByteArray &body)
{
    if (body.startsWith("\xef\xbb\xbf")) {
        // Newer versions of simdjson skip a byte order mark, which is no part of JSON.
        return simdjson::TAPE_ERROR;
    }
    JsonValue document = parseJson(parser, body);
    if (document.error() != simdjson::SUCCESS) {
        document = parseJson(parser, withShortNumbers(body));
    }
    return document.get_object();
}

/// The last of the members of that name, where simdjson itself would give the first.
JsonValue member(const dom::object &object, std::string_view name)
{
    JsonValue found = simdjson::NO_SUCH_FIELD;
    for (const auto &[key, value] : object) {
        if (key == name) {
            found = dom::element{value};
        }
    }
    return found;
}

std::optional<QString> textOf(const JsonValue &value)
{
    std::string_view text;
    return value.get(text) == simdjson::SUCCESS ? asUtf8(text) : std::nullopt;
}

/// Standard base64 without blanks and with its padding; empty when it is anything else.
QByteArray decodeBase64(std::string_view text)
{
    if (text.size() % 4 != 0) {
        return {};
    }
    const QByteArray digits = QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
    const auto decoded = QByteArray::fromBase64Encoding(digits, QByteArray::Base64Encoding |
                                                                    QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? *decoded : QByteArray{};
}

QImage imageAtUrl(const QString &text, const ResourceReader &readResource)
{
    const QUrl url{text, QUrl::StrictMode};
    if (text.isEmpty() || !url.isValid()) {
        return {};
    }
    const std::optional<QByteArray> bytes = readResource(url);
    return bytes ? imageCodec::decode(*bytes, pictureLimits::response) : QImage{};
}

GenerationResult parseFirstElement(const dom::object &element, const ResourceReader &readResource)
{
    if (dom::object error; member(element, "error").get(error) == simdjson::SUCCESS) {
        return GenError::serverError(textOf(member(error, "message")).value_or(u"图片生成失败"_s));
    }
    if (std::string_view encoded; member(element, "b64_json").get(encoded) == simdjson::SUCCESS) {
        const QImage image = imageCodec::decode(decodeBase64(encoded), pictureLimits::response);
        if (!image.isNull()) {
            return image;
        }
    }
    if (const std::optional<QString> url = textOf(member(element, "url"))) {
        if (const QImage image = imageAtUrl(*url, readResource); !image.isNull()) {
            return image;
        }
    }
    return GenError{GenError::Case::parseFailed};
}

/// The first element of `data` if that is an array of objects; nothing if it contains another element.
std::optional<dom::object> firstElement(const JsonValue &data)
{
    dom::array elements;
    if (data.get(elements) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    std::optional<dom::object> first;
    for (const dom::element element : elements) {
        dom::object object;
        if (element.get(object) != simdjson::SUCCESS) {
            return std::nullopt;
        }
        first = first.value_or(object);
    }
    return first;
}

} // namespace

GenerationResult parseResponse(const QByteArray &body, const ResourceReader &readResource)
{
    dom::parser parser;
    dom::object response;
    if (parseObject(parser, body).get(response) != simdjson::SUCCESS) {
        return GenError::serverError(asUtf8(body).value_or(u"无法解析响应"_s));
    }
    if (dom::object error; member(response, "error").get(error) == simdjson::SUCCESS) {
        return GenError::serverError(u'[' + textOf(member(error, "code")).value_or(QString{}) + u"] "_s +
                                     textOf(member(error, "message")).value_or(u"未知错误"_s));
    }
    const std::optional<dom::object> element = firstElement(member(response, "data"));
    if (!element) {
        // What is not UTF-8 is no JSON.
        const QString text = QString::fromUtf8(body);
        return GenError::serverError(u"响应缺少 data 字段："_s + firstCharacters(text, excerptCharacters));
    }
    return parseFirstElement(*element, readResource);
}

} // namespace quilmora
