#include "platform/ImageCodec.h"

#include "platform/PictureCompleteness.h"
#include "platform/PngEncoder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

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
    if (image.format() == QImage::Format_Grayscale16) {
        // Converted as it stands it would come back with eight bits' worth of greys.
        image.convertTo(QImage::Format_RGBX64);
        image.convertToColorSpace(srgb);
        return image.convertToFormat(QImage::Format_Grayscale16);
    }
    image.convertToColorSpace(srgb);
    return image;
}

bool isTooLarge(QSize size, qint64 mostPixels)
{
    return qint64{size.width()} * size.height() > mostPixels;
}

enum class Cut { given, refused };

QImage decodeBytes(const QByteArray &bytes, Cut cutPictures, qint64 mostPixels)
{
    raiseAllocationLimitOnce();
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader{&buffer};
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    if (!isBitmapFormat(format) || isTooLarge(reader.size(), mostPixels) ||
        (cutPictures == Cut::refused && !holdsWholePicture(bytes, format))) {
        return {};
    }
    return toSrgb(reader.read());
}

} // namespace

QImage decode(const QByteArray &bytes)
{
    return decodeBytes(bytes, Cut::given, maximumAnswerPixels);
}

QImage decodeFile(const QString &path)
{
    // Opening a pipe would wait for a writer.
    if (!QFileInfo{path}.isFile()) {
        return {};
    }
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly) || file.size() > maximumFileBytes) {
        return {};
    }
    return decodeBytes(file.readAll(), Cut::refused, maximumPixels);
}

QByteArray encodePng(const QImage &image)
{
    return isTooLarge(image.size(), maximumPixels) ? QByteArray{} : pngEncoder::encode(toSrgb(image));
}

} // namespace quilmora::imageCodec
