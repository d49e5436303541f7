#include "imaging/ImageCodec.h"

#include "imaging/PngEncoder.h"

#include <QBuffer>
#include <QByteArrayList>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <limits>
#include <mutex>

namespace quilmora::imageCodec {
namespace {

/// Qt's allocation limit, one for the whole process, is too small for large photos.
void allowBitmapsOf(qint64 pixels)
{
    static std::mutex mutex;
    const std::lock_guard lock{mutex};
    constexpr qint64 bytesPerPixel = 4;
    constexpr int unlimited = 0;
    const qint64 mebibytes = (pixels >> 20) * bytesPerPixel;
    if (mebibytes > std::numeric_limits<int>::max()) {
        QImageReader::setAllocationLimit(unlimited);
    } else if (const int now = QImageReader::allocationLimit(); now != unlimited && now < mebibytes) {
        QImageReader::setAllocationLimit(static_cast<int>(mebibytes));
    }
}

/// Bitmap formats only: vector formats may refer to other files, and pictures come from outside.
bool isBitmapFormat(const QByteArray &format)
{
    static const QByteArrayList formats{"png", "jpeg", "jpg", "gif", "webp", "bmp", "tif", "tiff"};
    return formats.contains(format);
}

QImage toSrgb(QImage image)
{
    const QColorSpace srgb{QColorSpace::SRgb};
    if (!image.colorSpace().isValid() || image.colorSpace() == srgb) {
        return image;
    }
    const bool isDeepGray = image.format() == QImage::Format_Grayscale16;
    if (isDeepGray) {
        // The direct conversion would reduce grays to eight bits.
        image.convertTo(QImage::Format_RGBX64);
    }
    image.convertToColorSpace(srgb);
    return isDeepGray ? image.convertToFormat(QImage::Format_Grayscale16) : image;
}

} // namespace

QImage decode(const QByteArray &bytes, const Limits &limits)
{
    allowBitmapsOf(limits.pixels);
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader{&buffer};
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!isBitmapFormat(reader.format()) || qint64{size.width()} * size.height() > limits.pixels) {
        return {};
    }
    return toSrgb(reader.read());
}

QImage decodeFile(const QString &path, const Limits &limits)
{
    // Opening a pipe would block until it has a writer.
    if (!QFileInfo{path}.isFile()) {
        return {};
    }
    QFile file{path};
    if (!file.open(QIODevice::ReadOnly) || file.size() > limits.fileBytes) {
        return {};
    }
    return decode(file.readAll(), limits);
}

QByteArray encodePng(const QImage &image) { return pngEncoder::encode(toSrgb(image)); }

} // namespace quilmora::imageCodec
