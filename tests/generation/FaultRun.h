#pragma once

#include "generation/GenerationProbe.h"
#include "generation/ImageGeneratorService.h"

#include <QTest>

#include <atomic>
#include <memory>

namespace quilmora::test
{

/// What the user comes to see of a fault.
struct Outcome {
    enum class Kind { picture, serverError, transportError };
    Kind kind;
    QString text; ///< Empty for a picture.

    static Outcome picture() { return {Kind::picture, {}}; }
    /// A text of the service or about its answer.
    static Outcome told(const QString &text) { return {Kind::serverError, text}; }
    /// A failure of the connection.
    static Outcome lost(const QString &text) { return {Kind::transportError, text}; }
};

inline Outcome outcomeOf(const Results &results, qsizetype index = 0)
{
    return {results.isPicture(index)    ? Outcome::Kind::picture
            : results.isGenError(index) ? Outcome::Kind::serverError
                                        : Outcome::Kind::transportError,
            results.text(index)};
}

/// Answers the first request with `fault` and every later one with a picture.
inline ScriptedHttpServer::Script faultOnce(const ScriptedAnswer &fault)
{
    return [fault, isFirst = std::make_shared<std::atomic_bool>(true)](const ReceivedRequest &) {
        return isFirst->exchange(false) ? fault : ScriptedAnswer::whole(pictureAnswer());
    };
}

/// The content codings that requests offer with this version of Qt, of those that contentCoding::encode()
/// knows.
inline QByteArrayList offeredCodings()
{
    const ScriptedHttpServer server{faultOnce(ScriptedAnswer::whole(pictureAnswer()))};
    Results results;
    ImageGeneratorService service;
    service.generateImage({}, 1, 1, {}, configFor(server), results.collect());
    if (!QTest::qWaitFor([&results] { return results.all.size() == 1; })) {
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

/// Generates with `config`, expecting the fault of `server` to come to `expected`, and once more, expecting a
/// picture: each with one result, and with one request to the server.
inline void survive(const ScriptedHttpServer &server, const VolcengineConfig &config, const Outcome &expected,
                    std::chrono::milliseconds limit = std::chrono::seconds{30}, const QString &prompt = {})
{
    Results results;
    ImageGeneratorService service{{.request = limit, .download = limit}};
    service.generateImage(prompt, 2848, 1600, {}, config, results.collect());
    QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 1, 60'000);
    const Outcome outcome = outcomeOf(results);
    QCOMPARE(outcome.text, expected.text);
    QCOMPARE(outcome.kind, expected.kind);
    QCOMPARE(server.headCount(), 1);

    // Had anything been left of the first, it would have come before this one's end.
    service.generateImage(QStringLiteral("good"), 2848, 1600, {}, config, results.collect());
    QTRY_COMPARE_WITH_TIMEOUT(results.all.size(), 2, 60'000);
    QVERIFY2(results.isPicture(1), qPrintable(results.text(1)));
    QCOMPARE(results.all.size(), 2);
    QCOMPARE(server.headCount(), 2);
}

inline void survive(const ScriptedHttpServer &server, const Outcome &expected,
                    std::chrono::milliseconds limit = std::chrono::seconds{30})
{
    survive(server, configFor(server), expected, limit);
}

} // namespace quilmora::test

Q_DECLARE_METATYPE(quilmora::test::Outcome)
