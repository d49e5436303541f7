#include "platform/FileWriter.h"

#include <QFile>

namespace quilmora
{

std::optional<QString> writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file{path};
    // Unbuffered, so that a full disk is reported by the write itself and with its own text.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    const bool whole = file.write(bytes) == bytes.size();
    QString error = file.errorString();
    file.close();
    if (whole && file.error() == QFileDevice::NoError) {
        return std::nullopt;
    }
    if (whole) {
        error = file.errorString();
    }
    file.remove();
    return error;
}

} // namespace quilmora
