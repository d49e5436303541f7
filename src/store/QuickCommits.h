#pragma once

#include <QtGlobal>

namespace quilmora
{

class SqliteConnection;

/// For as long as it exists, statements on `database` commit one by one as ever, but do not wait for the disk
/// each; at the end everything is on the disk. Should the power fail meanwhile, the last rows may be missing,
/// but the database is sound. Other programs wait for the end. Where the database cannot be switched over, or
/// the disk has little room for the log, nothing changes.
class QuickCommits final
{
public:
    explicit QuickCommits(SqliteConnection &database);
    Q_DISABLE_COPY_MOVE(QuickCommits)
    ~QuickCommits();

private:
    SqliteConnection &database;
    bool switched = false;
};

/// Makes one plain file again of a database that has been left with its log, by a program that was killed or
/// a disk that was full; not while another program uses it.
void endInterruptedQuickCommits(SqliteConnection &database);

} // namespace quilmora
