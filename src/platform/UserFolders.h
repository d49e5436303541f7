#pragma once

#include <QString>

/// The current user's folders. All paths are absolute and without a final slash.
namespace quilmora::userFolders {

/// The home folder.
QString home();

/// The folder of this user's application data; programs keep a subfolder of their own in it.
QString applicationSupport();

/// "Pictures" in the home folder, whatever the desktop calls its own pictures folder: stored paths of the
/// form "~/Pictures/…" name it on every machine.
QString pictures();

/// `path` with a leading "~" replaced by the home folder. "~name" and every other path stay as they are.
QString expandTilde(const QString &path);

} // namespace quilmora::userFolders
