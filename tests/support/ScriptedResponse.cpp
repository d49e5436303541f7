#include "support/ScriptedResponse.h"

#include <algorithm>
#include <brotli/encode.h>
#include <libdeflate.h>
#include <memory>
#include <zstd.h>

namespace quilmora::test {
namespace {

QByteArray gzip(const QByteArray &bytes)
{
    constexpr int level = 1;
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor{
        libdeflate_alloc_compressor(level), &libdeflate_free_compressor};
    const auto size = static_cast<std::size_t>(bytes.size());
    const std::size_t bound = libdeflate_gzip_compress_bound(compressor.get(), size);
    QByteArray encoded{static_cast<qsizetype>(bound), Qt::Uninitialized};
    return encoded.first(static_cast<qsizetype>(
        libdeflate_gzip_compress(compressor.get(), bytes.constData(), size, encoded.data(), bound)));
}

QByteArray brotli(const QByteArray &bytes)
{
    constexpr int quality = 1;
    std::size_t size = BrotliEncoderMaxCompressedSize(static_cast<std::size_t>(bytes.size()));
    QByteArray encoded{static_cast<qsizetype>(size), Qt::Uninitialized};
    if (BrotliEncoderCompress(quality, BROTLI_DEFAULT_WINDOW, BROTLI_MODE_GENERIC,
                              static_cast<std::size_t>(bytes.size()),
                              reinterpret_cast<const std::uint8_t *>(bytes.constData()), &size,
                              reinterpret_cast<std::uint8_t *>(encoded.data())) == BROTLI_FALSE) {
        qFatal("Brotli cannot compress this");
    }
    return encoded.first(static_cast<qsizetype>(size));
}

QByteArray zstd(const QByteArray &bytes)
{
    constexpr int level = 1;
    const auto bound = ZSTD_compressBound(static_cast<std::size_t>(bytes.size()));
    QByteArray encoded{static_cast<qsizetype>(bound), Qt::Uninitialized};
    const std::size_t size = ZSTD_compress(encoded.data(), bound, bytes.constData(),
                                           static_cast<std::size_t>(bytes.size()), level);
    if (ZSTD_isError(size) != 0U) {
        qFatal("Zstandard cannot compress this");
    }
    return encoded.first(static_cast<qsizetype>(size));
}

} // namespace

ScriptedResponse ScriptedResponse::whole(const QByteArray &body, const QByteArray &statusLine,
                                         const QByteArray &extraHeaders)
{
    const QByteArray head = "HTTP/1.1 " + statusLine +
                            "\r\nContent-Length: " + QByteArray::number(body.size()) +
                            "\r\nConnection: close\r\n" + extraHeaders + "\r\n";
    return {{{head + body}}};
}

ScriptedResponse ScriptedResponse::keptAlive(const QByteArray &body)
{
    return {{{"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) +
              "\r\nConnection: keep-alive\r\n\r\n" + body}},
            End::stayOpen};
}

ScriptedResponse ScriptedResponse::chunked(const QByteArray &body, qsizetype chunkSize)
{
    ScriptedResponse answer{{{"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"}}};
    for (qsizetype start = 0; start < body.size(); start += chunkSize) {
        const QByteArray chunk = body.sliced(start, std::min(chunkSize, body.size() - start));
        answer.pieces.append({QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n"});
    }
    answer.pieces.append({"0\r\n\r\n"});
    return answer;
}

QByteArray ScriptedResponse::compressed(const QByteArray &body, const QByteArray &coding)
{
    if (coding == "gzip") {
        return gzip(body);
    }
    if (coding == "br") {
        return brotli(body);
    }
    if (coding != "zstd") {
        qFatal("No such content coding: %s", coding.constData());
    }
    return zstd(body);
}

ScriptedResponse ScriptedResponse::encoded(const QByteArray &body, const QByteArray &coding)
{
    return whole(compressed(body, coding), "200 OK", "Content-Encoding: " + coding + "\r\n");
}

ScriptedResponse ScriptedResponse::cut(const QByteArray &body, qsizetype promised)
{
    return {{{"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(promised) + "\r\n\r\n" + body}}};
}

ScriptedResponse ScriptedResponse::dripping(const QByteArray &body, int parts,
                                            std::chrono::milliseconds pause)
{
    ScriptedResponse answer{
        {{"HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n"}}};
    const qsizetype size = body.size() / parts + 1;
    for (qsizetype start = 0; start < body.size(); start += size) {
        answer.pieces.append({body.mid(start, size), pause});
    }
    return answer;
}

ScriptedResponse ScriptedResponse::flood(qint64 size, const QByteArray &head)
{
    // All pieces share one block of memory.
    const QByteArray block(1'000'000, 'x');
    ScriptedResponse answer{{{head}}};
    for (qint64 left = size; left > 0; left -= block.size()) {
        // With a breath in between, as even the fastest network takes one.
        answer.pieces.append({left < block.size() ? block.first(left) : block, std::chrono::milliseconds{1}});
    }
    return answer;
}

ScriptedResponse ScriptedResponse::redirect(int status, const QByteArray &location)
{
    return whole({}, QByteArray::number(status) + " Redirected", "Location: " + location + "\r\n");
}

ScriptedResponse ScriptedResponse::silence() { return {{}, End::stayOpen}; }

ScriptedResponse ScriptedResponse::hangUp() { return {}; }

ScriptedResponse ScriptedResponse::reset() { return {{}, End::reset}; }

ScriptedResponse ScriptedResponse::after(std::chrono::milliseconds delay) const
{
    ScriptedResponse delayed = *this;
    delayed.pieces.prepend({{}, delay});
    return delayed;
}

} // namespace quilmora::test
