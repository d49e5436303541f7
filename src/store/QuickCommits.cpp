#include "store/QuickCommits.h"

#include "store/SqliteConnection.h"

#include <QFileInfo>

#include <cstdint>
#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Far more than the log takes. A full disk would not let it be taken in, and without room for its index
/// nobody else could even read.
constexpr std::uintmax_t roomForLog = std::uintmax_t{64} * 1024 * 1024;

bool hasRoomForLog(SqliteConnection &database)
{
    constexpr int fileColumn = 2;
    SqliteStatement row = database.prepare(u"PRAGMA database_list;"_s);
    if (!row || !row.step()) {
        return false;
    }
    std::error_code error;
    const std::filesystem::space_info room =
        std::filesystem::space(QFileInfo{row.text(fileColumn)}.filesystemPath(), error);
    return !error && room.available >= roomForLog;
}

} // namespace

QuickCommits::QuickCommits(SqliteConnection &theDatabase) : database{theDatabase}
{
    if (database.pragma(u"journal_mode"_s) != u"delete"_s || !hasRoomForLog(database)) {
        return;
    }
    switched = true;
    // Alone, the log needs no memory shared with other programs, which not every file system has.
    database.pragma(u"locking_mode = EXCLUSIVE"_s);
    if (database.pragma(u"journal_mode = WAL"_s) == u"wal"_s) {
        database.pragma(u"synchronous = NORMAL"_s);
    }
}

QuickCommits::~QuickCommits()
{
    if (!switched) {
        return;
    }
    database.pragma(u"synchronous = FULL"_s);
    database.pragma(u"journal_mode = DELETE"_s);
    database.pragma(u"locking_mode = NORMAL"_s);
    // The lock goes with the next read.
    database.pragma(u"schema_version"_s);
}

void endInterruptedQuickCommits(SqliteConnection &database)
{
    if (database.pragma(u"journal_mode"_s) == u"wal"_s) {
        database.pragma(u"journal_mode = DELETE"_s);
    }
}

} // namespace quilmora
