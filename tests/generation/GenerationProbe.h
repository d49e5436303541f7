#pragma once

#include "generation/GenerationResult.h"
#include "model/VolcengineConfig.h"
#include "support/SamplePictures.h"
#include "support/ScriptedHttpServer.h"

#include <QByteArray>
#include <QSize>

namespace quilmora::test {

/// The body of a good response with a picture of that size.
inline QByteArray pictureAnswer(QSize size = {32, 24})
{
    const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture(size));
    return R"({"data":[{"b64_json":")" + jpeg.toBase64() + R"("}]})";
}

/// The body of a good response that only names the picture's address.
inline QByteArray addressAnswer(const QByteArray &url) { return R"({"data":[{"url":")" + url + R"("}]})"; }

inline ScriptedResponse pictureResponse(QSize size = {32, 24})
{
    return ScriptedResponse::whole(pictureAnswer(size));
}

inline VolcengineConfig configFor(const QString &url)
{
    return {url, QStringLiteral("secret-key"), QStringLiteral("model-1")};
}

inline VolcengineConfig configFor(const ScriptedHttpServer &server)
{
    return configFor(server.url().toString());
}

} // namespace quilmora::test
