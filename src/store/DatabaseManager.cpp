#include "store/DatabaseManager.h"

#include "platform/Console.h"
#include "platform/Files.h"
#include "platform/Timestamp.h"
#include "store/HistoryTable.h"
#include "store/ImageStorageService.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

bool isOpenToOthers(const QFileInfo &place)
{
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    return (place.permissions() & others) != QFile::Permissions{};
}

/// Removes all permissions but the owner's to read and write from a file that others may access.
void closeFile(const QString &path)
{
    const QFileInfo file{path};
    if (file.isFile() && isOpenToOthers(file)) {
        QFile::setPermissions(path, file.permissions() & (QFile::ReadOwner | QFile::WriteOwner));
    }
}

/// Creates the folder and the database file if they are missing, and gives the path of the file. It contains
/// the key in plain text: only the owner may access both and SQLite's other files, where the system allows.
QString databaseFileIn(const QString &folder)
{
    QDir{}.mkpath(folder);
    if (const QFileInfo place{folder}; place.isDir() && isOpenToOthers(place)) {
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString path = folder + u"/quilmora.db"_s;
    static_cast<void>(
        QFile{path}.open(QIODevice::ReadWrite | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner));
    for (const auto suffix : {""_L1, "-journal"_L1, "-wal"_L1, "-shm"_L1}) {
        closeFile(path + suffix);
    }
    return path;
}

/// The text of a column that is NOT NULL.
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
    // The first window opens after this, so until here only one statement waits for another program.
    m_database.waitEachTime();
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
