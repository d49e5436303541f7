#include "screens/common/CoverExport.h"

#include "platform/FileWriter.h"
#include "platform/ImageCodec.h"
#include "screens/common/FilePanels.h"

#include <QImage>

using namespace Qt::StringLiterals;

namespace quilmora
{

void exportCover(const QImage &image, PointInTime moment, FilePanels &panels, QWidget *parent)
{
    const QString name = u"Quilmora_"_s + localDateText(moment, u"yyyyMMdd_HHmmss"_s) + u".png"_s;
    const auto path = panels.chooseCoverDestination(parent, name);
    if (!path) {
        return;
    }
    if (const QByteArray png = imageCodec::encodePng(image); !png.isEmpty()) {
        writeFile(*path, png);
    }
}

} // namespace quilmora
