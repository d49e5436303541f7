#pragma once

#include <QString>

/// The folder of the covers, and the form in which the history names what lies in it.
namespace quilmora::coversFolder {

/// "Quilmora/coverimg" in the user's pictures folder; absolute and without a final slash.
QString path();

/// The path that the history keeps for the cover with that file name: "~/Pictures/Quilmora/coverimg/" and the
/// name. Always this fixed text, so that it holds on every machine.
QString storedPath(const QString &name);

} // namespace quilmora::coversFolder
