#include "model/HistoryRecord.h"

#include "platform/ImageCodec.h"
#include "platform/UserFolders.h"

namespace quilmora
{

QImage HistoryRecord::image() const
{
    return imageCodec::decodeFile(userFolders::expandTilde(imagePath));
}

} // namespace quilmora
