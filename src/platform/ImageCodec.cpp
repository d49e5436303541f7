#include "platform/ImageCodec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include <algorithm>
#include <array>
#include <mutex>

namespace quilmora::imageCodec
{
namespace
{

void raiseAllocationLimitOnce()
{
    static std::once_flag raised;
    std::call_once(raised, [] { QImageReader::setAllocationLimit(maximumBitmapMebibytes); });
}

/// Bitmap formats only: drawings may name other files, and this reads pictures from strangers.
bool isBitmapFormat(const QByteArray &format)
{
    static constexpr std::array<const char *, 8> formats{"png",  "jpeg", "jpg", "gif",
                                                         "webp", "bmp",  "tif", "tiff"};
    return std::any_of(formats.begin(), formats.end(),
                       [&format](const char *known) { return format == known; });
}

QImage toSrgb(QImage image)
{
    const QColorSpace srgb{QColorSpace::SRgb};
    if (!image.colorSpace().isValid() || image.colorSpace() == srgb) {
        return image;
    }
    if (image.colorCount() > 0) {
        image = image.convertToFormat(QImage::Format_ARGB32);
    }
    if (image.isGrayscale() && image.pixelFormat().colorModel() == QPixelFormat::Grayscale) {
        return image;
    }
    image.convertToColorSpace(srgb);
    return image;
}

QImage decodeDevice(QIODevice &device)
{
    raiseAllocationLimitOnce();
    QImageReader reader{&device};
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!isBitmapFormat(reader.format())) {
        return {};
    }
    return toSrgb(reader.read());
}

} // namespace

QImage decode(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return decodeDevice(buffer);
}

QImage decodeFile(const QString &path)
{
    // Opening a pipe would wait for a writer.
    if (!QFileInfo{path}.isFile()) {
        return {};
    }
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return decodeDevice(file);
}

QByteArray encodePng(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer{&buffer, "png"};
    if (image.isNull() || !writer.write(image)) {
        return {};
    }
    return buffer.data();
}

} // namespace quilmora::imageCodec
