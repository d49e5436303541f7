#include "generation/RequestBody.h"

#include "imaging/ImageCodec.h"

#include <QByteArrayList>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr QByteArrayView dataUrlStart{"data:image/png;base64,"};

QByteArrayList pngFiles(const QList<QImage> &images)
{
    QByteArrayList files;
    for (const QImage &image : images) {
        if (const QByteArray png = imageCodec::encodePng(image); !png.isEmpty()) {
            files.append(png);
        }
    }
    return files;
}

/// The bytes that the data URLs take, with quotes and commas.
qsizetype sizeOfDataUrls(const QByteArrayList &files)
{
    constexpr qsizetype quotesAndComma = 3;
    qsizetype size = 0;
    for (const QByteArray &file : files) {
        size += dataUrlStart.size() + (file.size() + 2) / 3 * 4 + quotesAndComma;
    }
    return size;
}

/// Appends the file as a JSON string, quotes included. A data URL needs no escaping.
void appendDataUrl(QByteArray &body, const QByteArray &file)
{
    // In pieces that stay in the processor's caches, and whose size, divisible by three, keeps padding to the
    // end.
    constexpr qsizetype piece = qsizetype{48} * 1024;
    body += '"';
    body += dataUrlStart;
    for (qsizetype start = 0; start < file.size(); start += piece) {
        const qsizetype size = std::min(piece, file.size() - start);
        body += QByteArray::fromRawData(file.constData() + start, size).toBase64();
    }
    body += '"';
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
    const QByteArrayList files = pngFiles(request.referenceImages);
    if (files.isEmpty()) {
        return body;
    }
    // Put in as bytes: passing tens of megabytes through the JSON writer takes ten times as long.
    body.chop(1);
    constexpr qsizetype roomForTheMember = 16;
    body.reserve(body.size() + roomForTheMember + sizeOfDataUrls(files));
    body += R"(,"image":)";
    body += files.size() == 1 ? "" : "[";
    for (const QByteArray &file : files) {
        body += &file == &files.constFirst() ? "" : ",";
        appendDataUrl(body, file);
    }
    body += files.size() == 1 ? "}" : "]}";
    return body;
}

} // namespace quilmora
