#include "support/PngDecoders.h"

#include <memory>
#include <spng.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace quilmora::test::pngDecoders {
namespace {

QList<QRgba64> withQt(const QByteArray &file)
{
    return pixelsOf(QImage::fromData(file, "png"));
}

QList<QRgba64> withSpng(const QByteArray &file)
{
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context{spng_ctx_new(0), &spng_ctx_free};
    spng_set_crc_action(context.get(), SPNG_CRC_ERROR, SPNG_CRC_ERROR);
    std::size_t size = 0;
    if (spng_set_png_buffer(context.get(), file.constData(), static_cast<std::size_t>(file.size())) != 0 ||
        spng_decoded_image_size(context.get(), SPNG_FMT_RGBA16, &size) != 0) {
        return {};
    }
    std::vector<quint16> samples(size / sizeof(quint16));
    if (spng_decode_image(context.get(), samples.data(), size, SPNG_FMT_RGBA16, SPNG_DECODE_TRNS) != 0 ||
        spng_decode_chunks(context.get()) != 0) {
        return {};
    }
    QList<QRgba64> pixels;
    pixels.reserve(static_cast<qsizetype>(samples.size() / 4));
    for (std::size_t i = 0; i < samples.size(); i += 4) {
        pixels.append(qRgba64(samples[i], samples[i + 1], samples[i + 2], samples[i + 3]));
    }
    return pixels;
}

} // namespace

QList<Decoder> all()
{
    return {
        {u"Qt"_s, withQt},
        {u"libspng"_s, withSpng},
    };
}

QList<QRgba64> pixelsOf(const QImage &image)
{
    const QPixelFormat format = image.pixelFormat();
    const bool isDeep = image.format() == QImage::Format_Grayscale16 || format.redSize() > 8;
    // Of eight bits a channel no more are made than there are, whatever the alpha says.
    const QImage plain = isDeep ? image : image.convertToFormat(QImage::Format_ARGB32);
    const QImage deep = plain.convertToFormat(QImage::Format_RGBA64);
    QList<QRgba64> pixels;
    pixels.reserve(qsizetype{deep.width()} * deep.height());
    for (int y = 0; y < deep.height(); ++y) {
        const auto *row = static_cast<const QRgba64 *>(static_cast<const void *>(deep.constScanLine(y)));
        pixels.append(QList<QRgba64>{row, row + deep.width()});
    }
    return pixels;
}

} // namespace quilmora::test::pngDecoders
