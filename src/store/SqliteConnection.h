#pragma once

#include <QString>

#include <chrono>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace quilmora {

/// A prepared statement that is read row by row; finalized on destruction.
class SqliteStatement final
{
public:
    explicit SqliteStatement(sqlite3_stmt *statement);

    /// Whether preparing succeeded; no other operation may be called otherwise.
    explicit operator bool() const { return m_statement != nullptr; }

    /// Moves to the next row; false when there is none or the read failed.
    bool step();

    /// Whether the last move ended in an error rather than at a row or behind the last one.
    bool hasFailed() const { return m_failed; }

    bool isNull(int column) const;
    QString text(int column) const; ///< Empty for NULL.
    qint64 integer(int column) const;
    double real(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *pointer) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    bool m_failed = false;
};

/// One open database file. Failures are printed to standard output where stated and never thrown.
/// To be used from one thread at a time.
class SqliteConnection final
{
public:
    /// How long a statement waits for another program that uses the database before it fails.
    static constexpr std::chrono::milliseconds busyTimeout{5000};

    /// Opens the file, creating it if it is missing. When that fails, "无法打开数据库: " and the path are
    /// printed and every later operation fails quietly.
    explicit SqliteConnection(const QString &path);
    Q_DISABLE_COPY_MOVE(SqliteConnection)
    ~SqliteConnection() = default;

    /// While `once`, a statement that has waited in vain for another program makes all that follow fail at
    /// once when the database is busy. So it is at first.
    void setWaitsOnlyOnce(bool once);

    /// Runs the statements in `sql`; prints "SQL 错误: " and SQLite's message when one fails.
    void execute(const QString &sql);

    /// A statement to read from; false in a boolean context when `sql` cannot be prepared (nothing is
    /// printed).
    SqliteStatement prepare(const QString &sql);

    /// Whether the statement that failed last failed because another program used the database. Nothing is
    /// known of the content then.
    bool wasBusy() const;

    /// Whether a transaction is open; SQLite ends it by itself on some errors, for instance on a full disk.
    bool isInTransaction() const;

    /// `text` as an SQL text literal, quotes included.
    static QString quoted(const QString &text);

private:
    struct Close {
        void operator()(sqlite3 *pointer) const;
    };
    /// Sets SQLite's own limit.
    void setBusyTimeout(std::chrono::milliseconds timeout);
    /// Ends the waiting where `result` says that it was in vain.
    void noteResult(int result);

    std::unique_ptr<sqlite3, Close> m_connection;
    bool m_waitsOnlyOnce = true;
};

} // namespace quilmora
