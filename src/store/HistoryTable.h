#pragma once

#include "platform/Timestamp.h"

#include <QString>
#include <QStringList>

namespace quilmora {

class SqliteConnection;

/// The statement that adds one cover to the history.
QString historyInsertion(const QString &prompt, const QString &imagePath, Timestamp createdAt,
                         const QString &modelID);

/// The names of the table's columns, in its order; none when there is no such table. `table` becomes part of
/// a statement as it stands.
QStringList tableColumns(SqliteConnection &database, const QString &table);

/// Brings a history of an older version to the present layout: "model_key" becomes "model_id", and where
/// there is neither, an empty "model_id" is added. A history that has "model_id" is left alone, and so is one
/// that another program has locked. Failures are printed; the statements after them are executed.
void migrateHistoryTableIfNeeded(SqliteConnection &database);

/// Adds a row for every entry of `covers`, the folder of the covers, that ends in ".png", in small or capital
/// letters, and whose stored path is in no row yet, with the time at which the file was made, a fixed prompt
/// and no model. Nothing happens when the folder cannot be listed or another program uses the history. All
/// rows are written together: when the disk is full, none is, and the next start adds them. Failures are
/// printed; the other rows are added.
void backfillOrphanImages(SqliteConnection &database, const QString &covers);

} // namespace quilmora
