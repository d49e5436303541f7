#pragma once

#include <QString>

/// The database holds the key in plain text: nobody but its owner is to read it.
namespace quilmora::filePermissions {

/// Takes every right from others at the folder and the file of the database and at the files that SQLite puts
/// beside it, as far as they are there. A folder that was open to others gets all rights for its owner; a
/// file keeps those that its owner had to read and write it. A file that is missing is made, empty, so that
/// it is closed to others from the first moment. Where the system refuses, nothing happens.
void restrictToOwner(const QString &folder, const QString &file);

} // namespace quilmora::filePermissions
