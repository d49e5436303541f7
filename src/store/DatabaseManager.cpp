#include "store/DatabaseManager.h"

#include "platform/Console.h"
#include "platform/Timestamp.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/FilePermissions.h"
#include "store/HistoryInsertion.h"
#include "store/HistoryMigration.h"
#include "store/OrphanBackfill.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Creates the folder if need be, closed to other users, and gives the path of the database file in it.
QString databaseFileIn(const QString &folder)
{
    QDir{}.mkpath(folder);
    QString file = folder + u"/quilmora.db"_s;
    filePermissions::restrictToOwner(folder, file);
    return file;
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
    : m_database{databaseFileIn(folder)}
{
    createTables();
    migrateHistoryTableIfNeeded(m_database);
    ensureDefaultConfig();
    backfillOrphanImages(m_database, covers);
    // The first window comes after this, so up to here another program is waited for only once.
    m_database.setWaitsOnlyOnce(false);
}

DatabaseManager &DatabaseManager::shared()
{
    static DatabaseManager instance{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    return instance;
}

void DatabaseManager::createTables()
{
    m_database.execute(uR"(CREATE TABLE IF NOT EXISTS volc_config (
    id INTEGER PRIMARY KEY CHECK (id = 1),
    api_url TEXT NOT NULL DEFAULT '',
    api_key TEXT NOT NULL DEFAULT '',
    model_id TEXT NOT NULL DEFAULT ''
);)"_s);
    m_database.execute(uR"(CREATE TABLE IF NOT EXISTS history (
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
    if (SqliteStatement count = m_database.prepare(u"SELECT COUNT(*) FROM volc_config WHERE id = 1;"_s)) {
        missing = count.step() && count.integer(0) == 0;
    }
    if (missing) {
        m_database.execute(u"INSERT INTO volc_config (id, api_url, api_key, model_id)\nVALUES (1, '"_s +
                           VolcengineConfig::defaultURL() + u"', '', '"_s +
                           VolcengineConfig::defaultModelID() + u"');"_s);
    }
}

void DatabaseManager::saveConfig(const QString &apiURL, const QString &apiKey, const QString &modelID)
{
    if (apiKey.contains(QChar::Null)) {
        // It would end the statement, and SQLite's message would quote the key before it.
        console::printLine(u"SQL 错误: the key contains NUL"_s);
        return;
    }
    m_database.execute(u"INSERT OR REPLACE INTO volc_config (id, api_url, api_key, model_id)\nVALUES (1, "_s +
                       SqliteConnection::quoted(apiURL) + u", "_s + SqliteConnection::quoted(apiKey) +
                       u", "_s + SqliteConnection::quoted(modelID) + u");"_s);
}

VolcengineConfig DatabaseManager::getConfig()
{
    VolcengineConfig config{VolcengineConfig::defaultURL(), {}, VolcengineConfig::defaultModelID()};
    SqliteStatement row =
        m_database.prepare(u"SELECT api_url, api_key, model_id FROM volc_config WHERE id = 1;"_s);
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
    m_database.execute(historyInsertion(prompt, imagePath, now(), modelID));
}

QList<HistoryRecord> DatabaseManager::fetchAllHistory()
{
    QList<HistoryRecord> records;
    SqliteStatement rows = m_database.prepare(
        u"SELECT id, prompt, image_path, created_at, model_id FROM history ORDER BY created_at DESC;"_s);
    while (rows && rows.step()) {
        records.append({rows.integer(0), requiredText(rows, 1), requiredText(rows, 2),
                        fromSecondsSince1970(rows.real(3)), requiredText(rows, 4)});
    }
    return records;
}

void DatabaseManager::deleteHistory(qint64 id)
{
    m_database.execute(u"DELETE FROM history WHERE id = "_s + QString::number(id) + u';');
}

} // namespace quilmora
