#pragma once

#include <QString>

#include <chrono>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace quilmora
{

/// A prepared statement that is read row by row; finalized on destruction.
class SqliteStatement final
{
public:
    explicit SqliteStatement(sqlite3_stmt *statement);

    /// Whether preparing succeeded; no other operation may be called otherwise.
    explicit operator bool() const { return statement != nullptr; }

    /// Moves to the next row; false when there is none or the read failed.
    bool step();

    /// Whether the last move ended in an error rather than at a row or behind the last one.
    bool hasFailed() const { return failed; }

    bool isNull(int column) const;
    QString text(int column) const; ///< Empty for NULL.
    qint64 integer(int column) const;
    double real(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *pointer) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> statement;
    bool failed = false;
};

/// One open database file. Failures are printed to standard output where stated and never thrown.
/// To be used from one thread at a time.
class SqliteConnection final
{
public:
    /// How long a statement waits for another program that holds the database before it fails.
    static constexpr std::chrono::milliseconds longestWait{5000};

    /// Opens the file, creating it if it is missing. When that fails, "无法打开数据库: " and the path are
    /// printed and every later operation fails quietly.
    explicit SqliteConnection(const QString &path);
    Q_DISABLE_COPY_MOVE(SqliteConnection)
    ~SqliteConnection() = default;

    enum class Waiting {
        each,     ///< Every statement waits for as long as the longest wait.
        together, ///< All statements from here on, and the one before, wait no longer than one alone.
        none      ///< What another program holds fails at once.
    };

    /// How statements wait from here on; each by itself at first.
    void setWaiting(Waiting how);

    /// Runs the statements in `sql`; prints "SQL 错误: " and SQLite's message when one fails.
    void execute(const QString &sql);

    /// A statement to read from; false in a boolean context when `sql` cannot be prepared (nothing is
    /// printed).
    SqliteStatement prepare(const QString &sql);

    /// Whether what failed last, be it to run, to prepare or to step, failed because another program held the
    /// database. Whoever could not look then knows nothing of what is in it.
    bool wasHeldByAnother() const;

    /// `text` as an SQL text literal, quotes included.
    static QString quoted(const QString &text);

    /// Gives or sets one of the connection's properties and gives its value; empty when that fails.
    QString pragma(const QString &text);

private:
    struct Close {
        void operator()(sqlite3 *pointer) const;
    };
    using Clock = std::chrono::steady_clock;

    /// Asked by SQLite before each further attempt; waits a little, or gives 0 when it was long enough.
    static int waitForOthers(void *self, int attempts);
    bool waitALittle(int attempts);

    std::unique_ptr<sqlite3, Close> connection;
    Waiting waiting = Waiting::each;
    Clock::duration waited{}; ///< By the present statement, or by all that wait together.
};

} // namespace quilmora
