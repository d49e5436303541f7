#include "store/QuickCommits.h"

#include "store/SqliteConnection.h"

using namespace Qt::StringLiterals;

namespace quilmora
{

QuickCommits::QuickCommits(SqliteConnection &theDatabase) : database{theDatabase}
{
    if (pragma(u"journal_mode"_s) != u"delete"_s) {
        return;
    }
    switched = true;
    // Alone, the log needs no memory shared with other programs, which not every file system has.
    pragma(u"locking_mode = EXCLUSIVE"_s);
    if (pragma(u"journal_mode = WAL"_s) == u"wal"_s) {
        pragma(u"synchronous = NORMAL"_s);
    }
}

QuickCommits::~QuickCommits()
{
    if (!switched) {
        return;
    }
    pragma(u"synchronous = FULL"_s);
    pragma(u"journal_mode = DELETE"_s);
    pragma(u"locking_mode = NORMAL"_s);
    // The lock goes with the next read.
    pragma(u"schema_version"_s);
}

QString QuickCommits::pragma(const QString &text)
{
    SqliteStatement row = database.prepare(u"PRAGMA "_s + text + u';');
    return row && row.step() ? row.text(0) : QString{};
}

} // namespace quilmora
