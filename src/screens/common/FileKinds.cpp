#include "screens/common/FileKinds.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace quilmora
{

QString FileKinds::type(const QFileInfo &file) const
{
    // Folders and the like have texts of their own, which are translated.
    if (!file.isFile()) {
        return QFileIconProvider::type(file);
    }
    const QString ending = file.suffix().toUpper();
    if (ending == u"PNG"_s) {
        return u"PNG 图片"_s;
    }
    if (ending == u"JPG"_s || ending == u"JPEG"_s || ending == u"JPE"_s) {
        return u"JPEG 图片"_s;
    }
    return ending.isEmpty() ? u"文件"_s : QString{ending + u" 文件"_s};
}

} // namespace quilmora
