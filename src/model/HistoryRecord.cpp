#include "model/HistoryRecord.h"

#include "model/PictureLimits.h"
#include "platform/UserFolders.h"

namespace quilmora {

QImage HistoryRecord::image() const
{
    return imageCodec::decodeFile(userFolders::expandTilde(imagePath), pictureLimits::file);
}

} // namespace quilmora
