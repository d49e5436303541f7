#pragma once

#include <QImage>
#include <QString>

/// Pictures written as "data:" addresses.
namespace quilmora::dataUrl
{

/// The picture inside "data:image/png;base64,…" or "data:image/jpeg;base64,…". Null when the text has
/// another form, the base64 is not strict (blanks, line breaks, missing padding) or the bytes are not a
/// picture of the kind named. May be called from any thread.
QImage decodePicture(const QString &text);

} // namespace quilmora::dataUrl
