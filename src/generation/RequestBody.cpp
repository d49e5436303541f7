#include "generation/RequestBody.h"

#include "platform/ImageCodec.h"

#include <QByteArrayList>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// The pictures as JSON strings, quotes included. A data URL needs no escaping.
QByteArrayList dataUrls(const QList<QImage> &images)
{
    QByteArrayList urls;
    for (const QImage &image : images) {
        if (const QByteArray png = imageCodec::encodePng(image); !png.isEmpty()) {
            urls.append("\"data:image/png;base64," + png.toBase64() + '"');
        }
    }
    return urls;
}

} // namespace

QByteArray encodeRequestBody(const GenerationRequest &request)
{
    const QJsonObject members{
        {u"model"_s, request.modelID},
        {u"prompt"_s, request.prompt},
        {u"size"_s, QString{QString::number(request.width) + u'x' + QString::number(request.height)}},
        {u"response_format"_s, u"b64_json"_s},
        {u"watermark"_s, false},
        {u"sequential_image_generation"_s, u"disabled"_s},
    };
    QByteArray body = QJsonDocument{members}.toJson(QJsonDocument::Compact);
    const QByteArrayList images = dataUrls(request.referenceImages);
    if (images.isEmpty()) {
        return body;
    }
    // Put in as bytes: passing tens of megabytes through the JSON writer takes ten times as long.
    body.chop(1);
    body += R"(,"image":)";
    body += images.size() == 1 ? images.first() : '[' + images.join(',') + ']';
    body += '}';
    return body;
}

} // namespace quilmora
