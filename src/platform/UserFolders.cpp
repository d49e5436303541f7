#include "platform/UserFolders.h"

#include <QDir>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace quilmora::userFolders {

QString home()
{
    return QDir::homePath();
}

QString applicationSupport()
{
    // Not AppDataLocation, which would add the organisation's and the application's name.
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QString pictures()
{
    return home() + u"/Pictures"_s;
}

QString expandTilde(const QString &path)
{
    if (path == u"~"_s) {
        return home();
    }
    if (path.startsWith(u"~/"_s)) {
        return home() + QStringView{path}.mid(1);
    }
    return path;
}

} // namespace quilmora::userFolders
