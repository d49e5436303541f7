#include "imaging/ImageCodec.h"
#include "imaging/PngReader.h"

#include <QBuffer>
#include <QColorSpace>

#include <cstdlib>
#include <vector>

using namespace quilmora;

namespace {

/// More would take all the fuzzer's time.
constexpr qint64 mostPixels = 100'000;

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

/// The pixels alone, in one form for all pictures.
QImage pixels(const QImage &image)
{
    QImage plain = image.convertToFormat(QImage::Format_RGBA64);
    plain.setColorSpace({});
    return plain;
}

/// What was decoded comes back from its own file as it was.
void checkRoundTrip(const QImage &image)
{
    if (qint64{image.width()} * image.height() > mostPixels) {
        return;
    }
    const QImage again = imageCodec::decode(imageCodec::encodePng(image));
    require(again.size() == image.size());
    require(pixels(again) == pixels(image));
}

/// The rows that are read one by one, up to the end or the damage.
void readRows(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    PngReader reader{buffer};
    if (!reader.open() || reader.bytesPerRow() > mostPixels) {
        return;
    }
    std::vector<uchar> row(static_cast<std::size_t>(reader.bytesPerRow()));
    for (int y = 0; y < reader.size().height(); ++y) {
        if (!reader.read(row.data())) {
            return;
        }
    }
    reader.finish();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes{reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
    if (const QImage image = imageCodec::decode(bytes); !image.isNull()) {
        checkRoundTrip(image);
    }
    readRows(bytes);
    return 0;
}
