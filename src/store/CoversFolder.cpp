#include "store/CoversFolder.h"

#include "platform/UserFolders.h"

using namespace Qt::StringLiterals;

namespace quilmora::coversFolder {

QString path()
{
    return userFolders::pictures() + u"/Quilmora/coverimg"_s;
}

QString storedPath(const QString &name)
{
    return u"~/Pictures/Quilmora/coverimg/"_s + name;
}

} // namespace quilmora::coversFolder
