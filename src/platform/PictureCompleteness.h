#pragma once

#include <QByteArray>

namespace quilmora
{

/// Whether the first picture of a file reaches its end. Asked for those formats whose decoders make up the
/// lost part of a file that was cut short; true for every other format.
/// `bytes` is the whole file, `format` its format's name as the image reader gives it ("jpeg", "gif", "bmp").
bool holdsWholePicture(const QByteArray &bytes, const QByteArray &format);

} // namespace quilmora
