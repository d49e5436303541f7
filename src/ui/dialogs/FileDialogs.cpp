#include "ui/dialogs/FileDialogs.h"

#include "imaging/ImageCodec.h"
#include "platform/Files.h"

#include <QImage>

using namespace Qt::StringLiterals;

namespace quilmora {

void exportCover(const QImage &image, Timestamp moment, FileDialogs &dialogs, QWidget *parent)
{
    const QString name = u"Quilmora_"_s + localDateText(moment, u"yyyyMMdd_HHmmss"_s) + u".png"_s;
    const auto path = dialogs.chooseCoverDestination(parent, name);
    if (!path) {
        return;
    }
    if (const QByteArray png = imageCodec::encodePng(image); !png.isEmpty()) {
        writeFile(*path, png);
    }
}

} // namespace quilmora
