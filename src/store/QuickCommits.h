#pragma once

#include <QString>

namespace quilmora
{

class SqliteConnection;

/// For as long as it exists, statements on `database` commit one by one as ever, but do not wait for the disk
/// each; at the end everything is on the disk. Should the power fail meanwhile, the last rows may be missing,
/// but the database is sound. Other programs wait for the end. Where the database cannot be switched over,
/// nothing changes.
class QuickCommits final
{
public:
    explicit QuickCommits(SqliteConnection &database);
    Q_DISABLE_COPY_MOVE(QuickCommits)
    ~QuickCommits();

private:
    /// Gives or sets one of the connection's properties and gives its value; empty when that fails.
    QString pragma(const QString &text);

    SqliteConnection &database;
    bool switched = false;
};

} // namespace quilmora
