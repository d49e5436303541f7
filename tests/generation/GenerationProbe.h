#pragma once

#include "generation/GenerationResult.h"
#include "model/VolcengineConfig.h"
#include "support/SamplePictures.h"
#include "support/ScriptedHttpServer.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRegularExpression>
#include <QSize>
#include <QThread>

namespace quilmora::test
{

/// The results of one or more generations, in the order in which they came. To outlive what fills it.
struct Results {
    QList<GenerationResult> all;
    QList<QThread *> threads; ///< On which each of them came.

    GenerationCompletion collect()
    {
        return [this](const GenerationResult &result) {
            all.append(result);
            threads.append(QThread::currentThread());
        };
    }
    QString text(qsizetype index = 0) const { return localizedDescription(all.at(index)); }
    QImage picture(qsizetype index = 0) const
    {
        const auto *image = std::get_if<QImage>(&all.at(index));
        return image != nullptr ? *image : QImage{};
    }
    bool isPicture(qsizetype index = 0) const { return std::holds_alternative<QImage>(all.at(index)); }
    bool isGenError(qsizetype index = 0) const { return std::holds_alternative<GenError>(all.at(index)); }
    bool isTransportError(qsizetype index = 0) const
    {
        return std::holds_alternative<TransportError>(all.at(index));
    }
};

/// The body of a good answer with a picture of that size.
inline QByteArray pictureAnswer(QSize size = {32, 24})
{
    const QByteArray jpeg = samplePictures::jpeg(samplePictures::picture(size));
    return R"({"data":[{"b64_json":")" + jpeg.toBase64() + R"("}]})";
}

/// The body of a good answer that only names the picture's address.
inline QByteArray addressAnswer(const QByteArray &url)
{
    return R"({"data":[{"url":")" + url + R"("}]})";
}

inline VolcengineConfig configFor(const ScriptedHttpServer &server)
{
    return {server.url().toString(), QStringLiteral("secret-key"), QStringLiteral("model-1")};
}

/// Whether `text` is made of Chinese words, digits and signs, without a word of English; "SSL" and "TLS" are
/// names.
inline bool isChinese(QString text)
{
    static const QRegularExpression names{QStringLiteral("SSL|TLS|URL")};
    static const QRegularExpression english{QStringLiteral("[A-Za-z]")};
    static const QRegularExpression han{QStringLiteral("\\p{Han}")};
    return text.contains(han) && !text.remove(names).contains(english);
}

} // namespace quilmora::test
