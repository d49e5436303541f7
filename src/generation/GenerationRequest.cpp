#include "generation/GenerationRequest.h"

#include "imaging/ImageCodec.h"
#include "model/CoverInputs.h"

#include <QByteArrayList>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

bool isBlankOrTab(QChar character)
{
    return character == u'\t' || character.category() == QChar::Separator_Space;
}

QString expressionText(const CoverInputs &inputs)
{
    return inputs.selectedEmotion.isCustom() ? withoutOuterBlanks(inputs.customEmotion)
                                             : inputs.selectedEmotion.name;
}

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
    // Fits into the processor's caches; divisible by three, so that padding comes only at the end.
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

QString withoutOuterBlanks(const QString &text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), isBlankOrTab);
    const auto last = std::find_if_not(text.rbegin(), text.rend(), isBlankOrTab).base();
    return first < last ? QString{first, last - first} : QString{};
}

QString composePrompt(const CoverInputs &inputs)
{
    QStringList pieces{u"生成一张视频封面图。"_s};
    if (!inputs.titleText.isEmpty()) {
        pieces.append(u"封面主标题文字：「"_s + inputs.titleText + u"」，标题需突出醒目、具有冲击力。"_s);
    }
    if (!inputs.sceneText.isEmpty()) {
        pieces.append(u"背景场景："_s + inputs.sceneText + u"。"_s);
    }
    const QString expression = expressionText(inputs);
    if (!expression.isEmpty() && !Emotion{expression}.isCustom()) {
        pieces.append(u"人物表情："_s + expression + u"。"_s);
    }
    if (!withoutOuterBlanks(inputs.advancedText).isEmpty()) {
        pieces.append(u"额外风格指令："_s + inputs.advancedText + u"。"_s);
    }
    pieces.append(u"整体风格：高质量、电影感、社交媒体爆款封面风格。"_s);
    return pieces.join(u' ');
}

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
    // Appended as bytes: QJsonDocument takes ten times as long for tens of megabytes.
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
