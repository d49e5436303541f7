#include "support/ContentCoding.h"

#include <QtEndian>

#include <array>
#include <brotli/encode.h>
#include <zstd.h>

namespace quilmora::test::contentCoding {
namespace {

QByteArray littleEndian(quint32 value)
{
    const quint32 ordered = qToLittleEndian(value);
    return QByteArray{reinterpret_cast<const char *>(&ordered), sizeof ordered};
}

/// What each value of a byte adds to a checksum.
std::array<quint32, 256> checksumSteps()
{
    std::array<quint32, 256> steps{};
    for (quint32 value = 0; value < steps.size(); ++value) {
        quint32 step = value;
        for (int bit = 0; bit < 8; ++bit) {
            step = (step >> 1U) ^ ((step & 1U) != 0U ? 0xedb88320U : 0U);
        }
        steps.at(value) = step;
    }
    return steps;
}

quint32 checksum(const QByteArray &bytes)
{
    static const std::array<quint32, 256> steps = checksumSteps();
    quint32 sum = 0xffffffffU;
    for (const char byte : bytes) {
        sum = (sum >> 8U) ^ steps.at((sum ^ static_cast<quint8>(byte)) & 0xffU);
    }
    return ~sum;
}

QByteArray gzip(const QByteArray &bytes)
{
    // Around the packed data: a length and a two-byte header before it, a checksum of another kind behind.
    constexpr qsizetype before = 6;
    constexpr qsizetype behind = 4;
    const QByteArray packed = qCompress(bytes);
    return QByteArray::fromHex("1f8b08000000000000ff") +
           packed.sliced(before, packed.size() - before - behind) + littleEndian(checksum(bytes)) +
           littleEndian(static_cast<quint32>(bytes.size()));
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

QByteArray encode(const QByteArray &body, const QByteArray &coding)
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

} // namespace quilmora::test::contentCoding
