#include "store/DatabaseManager.h"

#include "platform/PointInTime.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/HistoryInsertion.h"
#include "store/HistoryMigration.h"
#include "store/OrphanBackfill.h"
#include "store/OwnersAlone.h"
#include "store/QuickCommits.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Creates the folder if need be, closed to other users, and gives the path of the database file in it.
QString databaseFileIn(const QString &folder)
{
    QDir{}.mkpath(folder);
    QString file = folder + u"/quilmora.db"_s;
    ownersAlone::protect(folder, file);
    return file;
}

/// What of `key` may stand in a statement: all of it, unless it holds a NUL. That ends the statement, which
/// fails with a message that quotes what stands before it.
QString withoutCutKey(const QString &key)
{
    return key.sliced(std::max<qsizetype>(0, key.indexOf(QChar::Null)));
}

/// The text of a column that can hold no NULL in a sound database.
QString requiredText(const SqliteStatement &row, int column)
{
    if (row.isNull(column)) {
        qFatal("The history table holds a NULL in column %d", column);
    }
    return row.text(column);
}

} // namespace

DatabaseManager::DatabaseManager(const QString &folder, const QString &covers)
    : database{databaseFileIn(folder)}
{
    // Another copy that uses the log holds it for as long as it runs.
    database.setWaiting(SqliteConnection::Waiting::none);
    endInterruptedQuickCommits(database);
    // Where another program holds the database, the window opens once that was waited for, not for each.
    database.setWaiting(SqliteConnection::Waiting::together);
    createTables();
    migrateHistoryTableIfNeeded(database);
    ensureDefaultConfig();
    backfillOrphanImages(database, covers);
    database.setWaiting(SqliteConnection::Waiting::each);
}

DatabaseManager &DatabaseManager::shared()
{
    static DatabaseManager instance{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    return instance;
}

void DatabaseManager::createTables()
{
    database.execute(uR"(CREATE TABLE IF NOT EXISTS volc_config (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    api_url TEXT NOT NULL DEFAULT '',
    api_key TEXT NOT NULL DEFAULT '',
    model_id TEXT NOT NULL DEFAULT ''
);)"_s);
    database.execute(uR"(CREATE TABLE IF NOT EXISTS history (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    prompt TEXT NOT NULL,
    image_path TEXT NOT NULL,
    created_at REAL NOT NULL,
    model_id TEXT NOT NULL DEFAULT ''
);)"_s);
}

void DatabaseManager::ensureDefaultConfig()
{
    bool missing = false;
    if (SqliteStatement count = database.prepare(u"SELECT COUNT(*) FROM volc_config WHERE id = 1;"_s)) {
        missing = count.step() && count.integer(0) == 0;
    }
    if (missing) {
        database.execute(u"INSERT INTO volc_config (id, api_url, api_key, model_id)\nVALUES (1, '"_s +
                         VolcengineConfig::defaultURL() + u"', '', '"_s + VolcengineConfig::defaultModelID() +
                         u"');"_s);
    }
}

void DatabaseManager::saveConfig(const QString &apiURL, const QString &apiKey, const QString &modelID)
{
    database.execute(u"INSERT OR REPLACE INTO volc_config (id, api_url, api_key, model_id)\nVALUES (1, "_s +
                     SqliteConnection::quoted(apiURL) + u", "_s +
                     SqliteConnection::quoted(withoutCutKey(apiKey)) + u", "_s +
                     SqliteConnection::quoted(modelID) + u");"_s);
}

VolcengineConfig DatabaseManager::getConfig()
{
    VolcengineConfig config{VolcengineConfig::defaultURL(), {}, VolcengineConfig::defaultModelID()};
    SqliteStatement row =
        database.prepare(u"SELECT api_url, api_key, model_id FROM volc_config WHERE id = 1;"_s);
    if (!row || !row.step()) {
        return config;
    }
    if (const QString url = row.text(0); !url.isEmpty()) {
        config.apiURL = url;
    }
    config.apiKey = row.text(1);
    if (const QString model = row.text(2); !model.isEmpty()) {
        config.modelID = model;
    }
    return config;
}

void DatabaseManager::insertHistory(const QString &prompt, const QString &imagePath, const QString &modelID)
{
    database.execute(historyInsertion(prompt, imagePath, now(), modelID));
}

QList<HistoryRecord> DatabaseManager::fetchAllHistory()
{
    QList<HistoryRecord> records;
    SqliteStatement rows = database.prepare(
        u"SELECT id, prompt, image_path, created_at, model_id FROM history ORDER BY created_at DESC;"_s);
    while (rows && rows.step()) {
        records.append({rows.integer(0), requiredText(rows, 1), requiredText(rows, 2),
                        fromSecondsSince1970(rows.real(3)), requiredText(rows, 4)});
    }
    return records;
}

void DatabaseManager::deleteHistory(qint64 id)
{
    database.execute(u"DELETE FROM history WHERE id = "_s + QString::number(id) + u';');
}

} // namespace quilmora
