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
    explicit SqliteStatement(sqlite3_stmt *statement) : m_statement{statement} {}

    /// Whether preparing succeeded; no other operation may be called otherwise.
    explicit operator bool() const { return m_statement != nullptr; }

    /// Moves to the next row; false when there is none or the read failed.
    bool step();

    /// Whether the last step() failed, rather than found no more rows.
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

/// One open database file. To be used from one thread at a time.
class SqliteConnection final
{
public:
    /// How long a statement waits for another program that uses the database before it fails.
    static constexpr std::chrono::milliseconds busyTimeout{5000};

    /// Opens the file, creating it if it is missing. When that fails, "无法打开数据库: " and the path are
    /// printed and every later operation fails without a line.
    explicit SqliteConnection(const QString &path);

    /// Before this call, only the first statement that finds the database busy waits.
    void waitEachTime();

    /// Runs the statements in `sql`; prints "SQL 错误: " and SQLite's message when one fails.
    void execute(const QString &sql);

    /// A statement to read from. Prints nothing when `sql` cannot be prepared.
    SqliteStatement prepare(const QString &sql);

    /// Whether the last failure was that another program uses the database.
    bool wasBusy() const;

    /// Whether a transaction is open; SQLite ends it by itself on some errors, for instance on a full disk.
    bool isInTransaction() const;

    /// `text` as an SQL text literal, quotes included.
    static QString quoted(const QString &text);

private:
    struct Close {
        void operator()(sqlite3 *pointer) const;
    };
    void setBusyTimeout(std::chrono::milliseconds timeout);
    /// Stops waiting after a statement that has waited in vain.
    void noteResult(int result);

    std::unique_ptr<sqlite3, Close> m_connection;
    bool m_waitsOnlyOnce = true;
};

/// The shortest decimal text, without an exponent, that reads back as `value`; it always has a decimal point
/// (1700000000 gives "1700000000.0"). `value` must be finite.
QString shortestDecimal(double value);

} // namespace quilmora
