#pragma once

#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"
#include "platform/ChineseTranslations.h"
#include "support/FailureNote.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QRegularExpression>
#include <QThread>

#include <atomic>
#include <memory>
#include <optional>

namespace quilmora::test {

/// What the user comes to see of a generation.
struct Outcome {
    enum class Kind { none, picture, serverError, transportError };
    Kind kind = Kind::none;
    QString text; ///< Of a picture its size.

    static Outcome picture(QSize size = {32, 24})
    {
        return {Kind::picture, QStringLiteral("%1x%2").arg(size.width()).arg(size.height())};
    }
    /// A text of the service or about its response.
    static Outcome shown(const QString &text) { return {Kind::serverError, text}; }
    /// A failure of the connection.
    static Outcome lost(const QString &text) { return {Kind::transportError, text}; }
    static Outcome closed() { return lost(QStringLiteral("连接已关闭")); }
    static Outcome timedOut() { return lost(QStringLiteral("请求超时")); }
    static Outcome unparsable() { return shown(QStringLiteral("无法解析图片数据")); }

    static Outcome of(const GenerationResult &result)
    {
        if (const auto *image = std::get_if<QImage>(&result)) {
            return picture(image->size());
        }
        const QString text = localizedDescription(result);
        return std::holds_alternative<GenError>(result) ? shown(text) : lost(text);
    }

    bool operator==(const Outcome &other) const = default;

    /// For the messages of QCOMPARE.
    friend char *toString(const Outcome &outcome)
    {
        return QTest::toString(
            QStringLiteral("kind %1: %2").arg(static_cast<int>(outcome.kind)).arg(outcome.text));
    }
};

/// A service, and the outcomes of its requests in the order in which they came.
class Client final
{
public:
    explicit Client(std::chrono::milliseconds limit = std::chrono::seconds{30})
        : service{ImageGeneratorService::IdleLimits{.request = limit, .download = limit}}
    {
    }

    void start(const VolcengineConfig &config, const QString &prompt = QStringLiteral("p"),
               const QList<QImage> &images = {})
    {
        service->generateImage(prompt, 2848, 1600, images, config, collect());
    }
    void start(const ScriptedHttpServer &server, const QString &prompt = QStringLiteral("p"),
               const QList<QImage> &images = {})
    {
        start(configFor(server), prompt, images);
    }

    /// Starts a request and waits for its outcome.
    Outcome generate(const VolcengineConfig &config, const QString &prompt = QStringLiteral("p"),
                     const QList<QImage> &images = {})
    {
        const qsizetype index = outcomes.size();
        start(config, prompt, images);
        return QTest::qWaitFor([&] { return outcomes.size() > index; }, 60'000) ? outcomes.at(index)
                                                                                : Outcome{};
    }
    Outcome generate(const ScriptedHttpServer &server, const QString &prompt = QStringLiteral("p"))
    {
        return generate(configFor(server), prompt);
    }

    GenerationCompletion collect()
    {
        return [this](const GenerationResult &result) {
            outcomes.append(Outcome::of(result));
            threads.append(QThread::currentThread());
        };
    }

    QList<Outcome> outcomes;
    QList<QThread *> threads; ///< On which each of them came.
    std::optional<ImageGeneratorService> service;
};

/// Whether `text` is made of Chinese words, digits and signs, without a word of English; "SSL" and "TLS" are
/// names.
inline bool isChinese(QString text)
{
    static const QRegularExpression names{QStringLiteral("SSL|TLS|URL")};
    static const QRegularExpression english{QStringLiteral("[A-Za-z]")};
    static const QRegularExpression han{QStringLiteral("\\p{Han}")};
    return text.contains(han) && !text.remove(names).contains(english);
}

/// Sends `fault` to the first request and a picture to every later one.
inline ScriptedHttpServer::Script faultOnce(const ScriptedResponse &fault)
{
    return [fault, isFirst = std::make_shared<std::atomic_bool>(true)](const ReceivedRequest &) {
        return isFirst->exchange(false) ? fault : pictureResponse();
    };
}

/// Generates with `config`, expecting the fault of `server` to come to `expected`, and once more, expecting a
/// picture: each with one result, and with one request to the server.
inline void survive(const ScriptedHttpServer &server, const VolcengineConfig &config, const Outcome &expected,
                    std::chrono::milliseconds limit = std::chrono::seconds{30},
                    const QString &prompt = QStringLiteral("p"))
{
    Client client{limit};
    QCOMPARE(client.generate(config, prompt), expected);
    QCOMPARE(server.headCount(), 1);

    // Had anything been left of the first, it would have come before this one's end.
    QCOMPARE(client.generate(config, QStringLiteral("good")), Outcome::picture());
    QCOMPARE(client.outcomes.size(), 2);
    QCOMPARE(server.headCount(), 2);
}

inline void survive(const ScriptedHttpServer &server, const Outcome &expected,
                    std::chrono::milliseconds limit = std::chrono::seconds{30})
{
    survive(server, configFor(server), expected, limit);
}

/// The pictures in a request, or in the member "image" of its body.
inline QList<QImage> picturesIn(const QJsonValue &image)
{
    QList<QImage> pictures;
    const QJsonArray urls = image.isArray() ? image.toArray() : QJsonArray{image};
    for (const auto &url : urls) {
        if (url.isString()) {
            const QByteArray base64 = url.toString().section(u',', 1).toLatin1();
            pictures.append(QImage::fromData(QByteArray::fromBase64(base64), "png"));
        }
    }
    return pictures;
}
inline QList<QImage> picturesIn(const ReceivedRequest &request)
{
    return picturesIn(QJsonDocument::fromJson(request.body)[QStringLiteral("image")]);
}

/// Runs the tests of a class with an application object whose texts are Chinese.
template <typename Test>
int runChineseTest(int argc, char **argv)
{
    QCoreApplication application{argc, argv};
    installChineseTranslations(application);
    return runTest<Test>(argc, argv);
}

/// The content codings that requests offer with this version of Qt, of those that
/// ScriptedResponse::compressed() knows.
inline QByteArrayList offeredCodings()
{
    const ScriptedHttpServer server{pictureResponse()};
    if (Client{}.generate(server) != Outcome::picture()) {
        qFatal("No request arrives");
    }
    QByteArrayList codings;
    for (const QByteArray &coding : server.requests().constFirst().header("Accept-Encoding").split(',')) {
        if (QByteArrayList{"gzip", "br", "zstd"}.contains(coding.trimmed())) {
            codings.append(coding.trimmed());
        }
    }
    return codings;
}

} // namespace quilmora::test

Q_DECLARE_METATYPE(quilmora::test::Outcome)
