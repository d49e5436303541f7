#pragma once

#include "platform/Timestamp.h"

class QImage;
class QWidget;

namespace quilmora {

class FileDialogs;

/// Lets the user save `image` as a PNG file. The proposed name contains `moment` in local time. A failed
/// write changes nothing and is not reported.
void exportCover(const QImage &image, Timestamp moment, FileDialogs &dialogs, QWidget *parent);

} // namespace quilmora
