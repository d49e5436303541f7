#pragma once

#include <QString>

namespace quilmora {

class SqliteConnection;

/// Adds a row to the history for every entry of `covers`, the folder of the covers, whose name ends in
/// ".png", in small or capital letters, and whose stored path is in no row yet. Such a row has the time at
/// which the file was made, a fixed prompt and no model. Nothing happens when the folder cannot be listed
/// or another program uses the history; a row that cannot be added is printed and does not hold up the
/// others. All rows are written together: when the disk is full, none is, and the next start adds them.
void backfillOrphanImages(SqliteConnection &database, const QString &covers);

} // namespace quilmora
