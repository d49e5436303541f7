#pragma once

#include <QStringList>

namespace quilmora {

class SqliteConnection;

/// The names of the table's columns, in its order; none when there is no such table. `table` becomes part of
/// a statement as it stands.
QStringList tableColumns(SqliteConnection &database, const QString &table);

/// Brings a history of an older version to the present layout: "model_key" becomes "model_id", and where
/// there is neither, "model_id" is added, empty. A history that has "model_id" is left alone, and
/// so is one that another program holds. Failures are printed and do not hold up the statements that follow.
void migrateHistoryTableIfNeeded(SqliteConnection &database);

} // namespace quilmora
