#include "store/FilePermissions.h"

#include <QFile>
#include <QFileInfo>

#include <initializer_list>

namespace quilmora::filePermissions {
namespace {

constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

bool isOpenToOthers(const QFileInfo &place)
{
    return (place.permissions() & others) != QFile::Permissions{};
}

void closeFile(const QString &path)
{
    const QFileInfo file{path};
    if (file.isFile() && isOpenToOthers(file)) {
        QFile::setPermissions(path, file.permissions() & (QFile::ReadOwner | QFile::WriteOwner));
    }
}

void closeFolder(const QString &path)
{
    const QFileInfo folder{path};
    if (folder.isDir() && isOpenToOthers(folder)) {
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

} // namespace

void restrictToOwner(const QString &folder, const QString &file)
{
    closeFolder(folder);
    static_cast<void>(
        QFile{file}.open(QIODevice::ReadWrite | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner));
    for (const char *suffix : {"", "-journal", "-wal", "-shm"}) {
        closeFile(file + QLatin1String{suffix});
    }
}

} // namespace quilmora::filePermissions
