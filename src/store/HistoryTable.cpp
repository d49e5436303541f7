#include "store/HistoryTable.h"

#include "store/ImageStorageService.h"
#include "store/SqliteConnection.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>

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

/// Without names that are not valid UTF-8; none when the folder cannot be listed.
QStringList pngNames(const QString &folder)
{
    QStringList names;
    // Not QDirIterator: in Qt 6.8 it omits all entries after the first whose name is not valid UTF-8.
    std::error_code error;
    std::filesystem::directory_iterator entry{QFileInfo{folder}.filesystemFilePath(), error};
    for (; !error && entry != std::filesystem::directory_iterator{}; entry.increment(error)) {
        const std::string bytes = entry->path().filename().native();
        const QString name = QFile::decodeName(QByteArray::fromStdString(bytes));
        if (QUtf8StringView{bytes}.isValidUtf8() && name.endsWith(u".png"_s, Qt::CaseInsensitive)) {
            names.append(name);
        }
    }
    return names;
}

/// The paths in the history; nothing when it could not be read to its end.
std::optional<QSet<QString>> knownPaths(SqliteConnection &database)
{
    QSet<QString> paths;
    SqliteStatement rows = database.prepare(u"SELECT image_path FROM history;"_s);
    if (!rows) {
        return database.wasBusy() ? std::nullopt : std::optional{paths};
    }
    while (rows.step()) {
        paths.insert(rows.text(0));
    }
    return rows.hasFailed() ? std::nullopt : std::optional{paths};
}

/// The time of the last change where the file system has no time of creation.
Timestamp creationTime(const QString &path)
{
    const QFileInfo file{path};
    for (const QDateTime &moment : {file.birthTime(), file.lastModified()}) {
        if (moment.isValid()) {
            return fromSecondsSince1970(static_cast<double>(moment.toMSecsSinceEpoch()) / 1000.0);
        }
    }
    return now();
}

} // namespace

QString historyInsertion(const QString &prompt, const QString &imagePath, Timestamp createdAt,
                         const QString &modelID)
{
    return u"INSERT INTO history (prompt, image_path, created_at, model_id)\nVALUES ("_s +
           SqliteConnection::quoted(prompt) + u", "_s + SqliteConnection::quoted(imagePath) + u", "_s +
           shortestDecimal(secondsSince1970(createdAt)) + u", "_s + SqliteConnection::quoted(modelID) +
           u");"_s;
}

QStringList tableColumns(SqliteConnection &database, const QString &table)
{
    constexpr int nameColumn = 1;
    QStringList names;
    SqliteStatement rows = database.prepare(u"PRAGMA table_info("_s + table + u");"_s);
    while (rows && rows.step()) {
        names.append(rows.text(nameColumn));
    }
    return names;
}

void migrateHistoryTableIfNeeded(SqliteConnection &database)
{
    const QStringList columns = tableColumns(database, u"history"_s);
    if (columns.isEmpty() && database.wasBusy()) {
        // If it is unlocked by now, a history with "model_key" would get a second, empty column for the
        // model.
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

void backfillOrphanImages(SqliteConnection &database, const QString &covers)
{
    const QStringList names = pngNames(covers);
    const auto known = knownPaths(database);
    if (!known) {
        // Covers whose rows were not read would be added again.
        return;
    }
    QStringList orphans;
    std::copy_if(names.begin(), names.end(), std::back_inserter(orphans),
                 [&](const QString &name) { return !known->contains(coversFolder::storedPath(name)); });
    if (orphans.isEmpty()) {
        return;
    }
    // One transaction: waiting for the disk after each of thousands of rows would delay the first window.
    database.execute(u"BEGIN;"_s);
    for (const QString &name : orphans) {
        database.execute(historyInsertion(u"(历史图片，已自动补录)"_s, coversFolder::storedPath(name),
                                          creationTime(covers + u'/' + name), QString{}));
    }
    // SQLite has already rolled back a transaction in which the disk was full.
    for (const QString &end : {u"COMMIT;"_s, u"ROLLBACK;"_s}) {
        if (database.isInTransaction()) {
            database.execute(end);
        }
    }
}

} // namespace quilmora
