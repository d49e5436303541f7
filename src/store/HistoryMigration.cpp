#include "store/HistoryMigration.h"

#include "store/SqliteConnection.h"

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Ids are kept. What a copy cannot take over goes with the old table.
void rebuildWithModelID(SqliteConnection &database)
{
    database.execute(u"ALTER TABLE history RENAME TO history_old;"_s);
    database.execute(uR"(    CREATE TABLE history (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        prompt TEXT NOT NULL,
        image_path TEXT NOT NULL,
        created_at REAL NOT NULL,
        model_id TEXT NOT NULL DEFAULT ''
    );)"_s);
    database.execute(uR"(    INSERT INTO history (id, prompt, image_path, created_at, model_id)
    SELECT id, prompt, image_path, created_at, model_key FROM history_old;)"_s);
    database.execute(u"DROP TABLE history_old;"_s);
}

} // namespace

QStringList tableColumns(SqliteConnection &database, const QString &table)
{
    constexpr int nameColumn = 1;
    QStringList names;
    SqliteStatement rows = database.prepare(u"PRAGMA table_info("_s + table + u");"_s);
    while (rows && rows.step()) {
        if (!rows.isNull(nameColumn)) {
            names.append(rows.text(nameColumn));
        }
    }
    return names;
}

void migrateHistoryTableIfNeeded(SqliteConnection &database)
{
    const QStringList columns = tableColumns(database, u"history"_s);
    if (columns.isEmpty() && database.wasBusy()) {
        // Let go by now, a history with "model_key" would get a second, empty column for the model.
        return;
    }
    if (columns.contains(u"model_id"_s)) {
        return;
    }
    if (columns.contains(u"model_key"_s)) {
        rebuildWithModelID(database);
    } else {
        database.execute(u"ALTER TABLE history ADD COLUMN model_id TEXT NOT NULL DEFAULT '';"_s);
    }
}

} // namespace quilmora
