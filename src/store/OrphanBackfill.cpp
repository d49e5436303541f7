#include "store/OrphanBackfill.h"

#include "platform/Timestamp.h"
#include "store/CoversFolder.h"
#include "store/HistoryInsertion.h"
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

/// Names in the order in which the platform lists them, without those that are not valid UTF-8; none when the
/// folder cannot be listed.
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
        if (!rows.isNull(0)) {
            paths.insert(rows.text(0));
        }
    }
    return rows.hasFailed() ? std::nullopt : std::optional{paths};
}

/// Not every file system keeps the time of creation; the last change stands for it then.
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

void backfillOrphanImages(SqliteConnection &database, const QString &covers)
{
    const QStringList names = pngNames(covers);
    const auto known = knownPaths(database);
    if (!known) {
        // Every cover after the break would come back as an orphan.
        return;
    }
    QStringList orphans;
    std::copy_if(names.begin(), names.end(), std::back_inserter(orphans),
                 [&](const QString &name) { return !known->contains(coversFolder::storedPath(name)); });
    if (orphans.isEmpty()) {
        return;
    }
    // One write to the disk for all of them: one for each of thousands would hold up the first window.
    database.execute(u"BEGIN;"_s);
    for (const QString &name : orphans) {
        database.execute(historyInsertion(u"(历史图片，已自动补录)"_s, coversFolder::storedPath(name),
                                          creationTime(covers + u'/' + name), QString{}));
    }
    // SQLite has already taken back a transaction in which the disk was full.
    for (const QString &end : {u"COMMIT;"_s, u"ROLLBACK;"_s}) {
        if (database.isInTransaction()) {
            database.execute(end);
        }
    }
}

} // namespace quilmora
