#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>

#include <chrono>

namespace quilmora::test {

/// What the server does with one request: the bytes in their pieces, with a pause before each.
struct ScriptedResponse {
    struct Piece {
        QByteArray bytes;
        std::chrono::milliseconds pauseBefore{0};
    };
    enum class End {
        close,    ///< The connection is closed in order.
        reset,    ///< The connection is torn down.
        stayOpen, ///< The connection stays open and takes further requests.
    };
    QList<Piece> pieces;
    End end = End::close;

    /// A whole answer with a right content length.
    static ScriptedResponse whole(const QByteArray &body, const QByteArray &statusLine = "200 OK",
                                  const QByteArray &extraHeaders = {});
    /// The same on a connection that is kept for further requests.
    static ScriptedResponse keptAlive(const QByteArray &body);
    /// An answer in chunks of `chunkSize` bytes.
    static ScriptedResponse chunked(const QByteArray &body, qsizetype chunkSize);
    /// `body` compressed with a content coding of HTTP: "gzip", "br" or "zstd". The test program ends for any
    /// other.
    static QByteArray compressed(const QByteArray &body, const QByteArray &coding);
    /// An answer whose body is compressed so.
    static ScriptedResponse encoded(const QByteArray &body, const QByteArray &coding = "gzip");
    /// An answer that promises `promised` bytes, sends `body` and closes.
    static ScriptedResponse cut(const QByteArray &body, qsizetype promised);
    /// An answer whose body comes in `parts` parts with a pause before each.
    static ScriptedResponse dripping(const QByteArray &body, int parts, std::chrono::milliseconds pause);
    /// An answer of `size` bytes without meaning, whose `head` may promise anything.
    static ScriptedResponse flood(qint64 size, const QByteArray &head);
    /// Sends the client to `location`.
    static ScriptedResponse redirect(int status, const QByteArray &location);
    /// Takes the request and never answers.
    static ScriptedResponse silence();
    /// Takes the request and closes the connection without a word.
    static ScriptedResponse hangUp();
    /// Takes the request and tears the connection down.
    static ScriptedResponse reset();
    ScriptedResponse after(std::chrono::milliseconds delay) const;
};

} // namespace quilmora::test

Q_DECLARE_METATYPE(quilmora::test::ScriptedResponse)
Q_DECLARE_METATYPE(quilmora::test::ScriptedResponse::End)
