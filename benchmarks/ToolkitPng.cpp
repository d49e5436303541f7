#include "ToolkitPng.h"

#include <QBuffer>

namespace quilmora::bench
{

QByteArray toolkitPng(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "png")) {
        qFatal("The toolkit cannot write a PNG");
    }
    return buffer.data();
}

} // namespace quilmora::bench
