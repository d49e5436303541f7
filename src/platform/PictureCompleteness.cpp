#include "platform/PictureCompleteness.h"

#include <QtEndian>

namespace quilmora
{
namespace
{

quint8 byteAt(const QByteArray &bytes, qsizetype position)
{
    return static_cast<quint8>(bytes.at(position));
}

/// Whether the end-of-image marker is there. Thumbnails lie inside segments and are stepped over with them.
bool jpegReachesItsEnd(const QByteArray &bytes)
{
    constexpr quint8 stuffedByte = 0x00;
    constexpr quint8 fillByte = 0xff;
    constexpr quint8 temporary = 0x01;
    constexpr quint8 firstRestart = 0xd0;
    constexpr quint8 startOfImage = 0xd8;
    constexpr quint8 endOfImage = 0xd9;

    qsizetype position = 0;
    while ((position = bytes.indexOf('\xff', position)) >= 0 && position + 1 < bytes.size()) {
        const quint8 marker = byteAt(bytes, ++position);
        if (marker == fillByte) {
            continue;
        }
        ++position;
        if (marker == endOfImage) {
            return true;
        }
        const bool alone = marker == stuffedByte || marker == temporary ||
                           (marker >= firstRestart && marker <= startOfImage);
        if (alone) {
            continue;
        }
        if (position + 2 > bytes.size()) {
            return false;
        }
        position += qFromBigEndian<quint16>(bytes.constData() + position);
    }
    return false;
}

/// The position after a chain of data blocks, each led by its length, up to the empty one; -1 if it is cut.
qsizetype gifBlocksEnd(const QByteArray &bytes, qsizetype position)
{
    while (position < bytes.size()) {
        const quint8 length = byteAt(bytes, position);
        position += 1 + length;
        if (length == 0) {
            return position;
        }
    }
    return -1;
}

/// The size in bytes of the colour table that a GIF's flags announce.
qsizetype gifColourTable(quint8 flags)
{
    constexpr quint8 present = 0x80;
    constexpr quint8 sizeBits = 0x07;
    return (flags & present) != 0 ? qsizetype{3} << ((flags & sizeBits) + 1) : 0;
}

/// Whether the first picture's data is there up to its end.
bool gifReachesItsEnd(const QByteArray &bytes)
{
    constexpr quint8 extension = 0x21;
    constexpr quint8 picture = 0x2c;
    constexpr qsizetype screenFlags = 10;
    constexpr qsizetype screenDescriptorEnd = 13;
    constexpr qsizetype pictureFlags = 9;
    constexpr qsizetype pictureDescriptorEnd = 10;

    if (bytes.size() <= screenDescriptorEnd) {
        return false;
    }
    qsizetype position = screenDescriptorEnd + gifColourTable(byteAt(bytes, screenFlags));
    while (position >= 0 && position < bytes.size() && byteAt(bytes, position) == extension) {
        position = gifBlocksEnd(bytes, position + 2);
    }
    if (position < 0 || position + pictureDescriptorEnd >= bytes.size() ||
        byteAt(bytes, position) != picture) {
        return false;
    }
    const qsizetype colours = gifColourTable(byteAt(bytes, position + pictureFlags));
    // One byte after the colours, the size of the first codes, comes before the data.
    return gifBlocksEnd(bytes, position + pictureDescriptorEnd + colours + 1) >= 0;
}

/// Whether the file is as long as its header says.
bool bmpReachesItsEnd(const QByteArray &bytes)
{
    constexpr qsizetype lengthField = 2;
    return bytes.size() >= lengthField + 4 &&
           bytes.size() >= qsizetype{qFromLittleEndian<quint32>(bytes.constData() + lengthField)};
}

} // namespace

bool holdsWholePicture(const QByteArray &bytes, const QByteArray &format)
{
    if (format == "jpeg" || format == "jpg") {
        return jpegReachesItsEnd(bytes);
    }
    if (format == "gif") {
        return gifReachesItsEnd(bytes);
    }
    if (format == "bmp") {
        return bmpReachesItsEnd(bytes);
    }
    return true;
}

} // namespace quilmora
