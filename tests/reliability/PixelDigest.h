#pragma once

#include <QCryptographicHash>
#include <QImage>
#include <QString>

namespace quilmora::test {

/// The same text for the same pixels, however they are kept.
inline QString pixelDigest(const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_RGB32);
    QCryptographicHash hash{QCryptographicHash::Sha1};
    for (int y = 0; y < plain.height(); ++y) {
        const void *const row = plain.constScanLine(y);
        hash.addData(QByteArray::fromRawData(static_cast<const char *>(row), qsizetype{plain.width()} * 4));
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace quilmora::test
