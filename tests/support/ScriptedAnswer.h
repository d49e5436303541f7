#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>

#include <chrono>

namespace quilmora::test
{

/// What the server does with one request: the bytes in their pieces, with a pause before each.
struct ScriptedAnswer {
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
    static ScriptedAnswer whole(const QByteArray &body, const QByteArray &statusLine = "200 OK",
                                const QByteArray &extraHeaders = {});
    /// The same on a connection that is kept for further requests.
    static ScriptedAnswer keptAlive(const QByteArray &body);
    /// An answer in chunks of `chunkSize` bytes.
    static ScriptedAnswer chunked(const QByteArray &body, qsizetype chunkSize);
    /// An answer whose body is compressed with that content coding, as contentCoding::encode() takes it.
    static ScriptedAnswer encoded(const QByteArray &body, const QByteArray &coding = "gzip");
    /// An answer that promises `promised` bytes, sends `body` and closes.
    static ScriptedAnswer cut(const QByteArray &body, qsizetype promised);
    /// An answer whose body comes in `parts` parts with a pause before each.
    static ScriptedAnswer dripping(const QByteArray &body, int parts, std::chrono::milliseconds pause);
    /// An answer of `size` bytes without meaning, whose `head` may promise anything.
    static ScriptedAnswer flood(qint64 size, const QByteArray &head);
    /// Sends the client to `location`.
    static ScriptedAnswer redirect(int status, const QByteArray &location);
    /// Takes the request and never answers.
    static ScriptedAnswer silence();
    /// Takes the request and closes the connection without a word.
    static ScriptedAnswer hangUp();
    /// Takes the request and tears the connection down.
    static ScriptedAnswer reset();
    ScriptedAnswer after(std::chrono::milliseconds delay) const;
};

} // namespace quilmora::test

Q_DECLARE_METATYPE(quilmora::test::ScriptedAnswer)
Q_DECLARE_METATYPE(quilmora::test::ScriptedAnswer::End)
