#include "platform/FileWriter.h"

#include <QFile>
#include <QFileInfo>

namespace quilmora {
namespace {

bool writeWhole(QFile &file, const QByteArray &bytes)
{
    qint64 done = 0;
    // A disk that fills up takes a part without a word and gives its reason at the next write.
    while (done < bytes.size()) {
        const qint64 taken = file.write(bytes.constData() + done, bytes.size() - done);
        if (taken <= 0) {
            return false;
        }
        done += taken;
    }
    return true;
}

/// Only regular files can hold a part; a device or a link to one is left alone.
void removePart(const QString &path)
{
    const QFileInfo target{path};
    if (target.isFile()) {
        QFile::remove(target.canonicalFilePath());
    }
}

} // namespace

std::optional<QString> writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file{path};
    // Unbuffered, so that a full disk is reported by the write itself and with its own text.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return file.errorString();
    }
    const bool whole = writeWhole(file, bytes);
    QString error = file.errorString();
    file.close();
    if (whole && file.error() == QFileDevice::NoError) {
        return std::nullopt;
    }
    if (whole) {
        error = file.errorString();
    }
    removePart(path);
    return error;
}

} // namespace quilmora
