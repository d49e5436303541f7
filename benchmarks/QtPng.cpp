#include "QtPng.h"

#include <QBuffer>

namespace quilmora::bench {

QByteArray qtPng(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "png")) {
        qFatal("Qt cannot write a PNG");
    }
    return buffer.data();
}

} // namespace quilmora::bench
