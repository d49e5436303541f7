#pragma once

#include "platform/PointInTime.h"

class QImage;
class QWidget;

namespace quilmora
{

class FilePanels;

/// Lets the user save `image` as a PNG file; the proposed name holds `moment` in local time. A cancelled
/// panel and a failed write change nothing and are not reported.
void exportCover(const QImage &image, PointInTime moment, FilePanels &panels, QWidget *parent);

} // namespace quilmora
