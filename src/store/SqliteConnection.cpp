#include "store/SqliteConnection.h"

#include "platform/Console.h"

#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <sqlite3.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Whether a pipe or the like lies where SQLite looks for changes that were broken off: it would read without
/// end.
bool hasEndlessJournal(const QString &path)
{
    const QFileInfo journal{path + u"-journal"_s};
    return journal.exists() && !journal.isFile() && !journal.isDir();
}

QString keepingTheMark(QByteArrayView utf8)
{
    QStringDecoder decoder{QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom};
    return decoder(utf8);
}

} // namespace

SqliteStatement::SqliteStatement(sqlite3_stmt *prepared) : statement{prepared} {}

bool SqliteStatement::step()
{
    const int result = sqlite3_step(statement.get());
    failed = result != SQLITE_ROW && result != SQLITE_DONE;
    return result == SQLITE_ROW;
}

bool SqliteStatement::isNull(int column) const
{
    return sqlite3_column_type(statement.get(), column) == SQLITE_NULL;
}

QString SqliteStatement::text(int column) const
{
    const auto *bytes =
        static_cast<const char *>(static_cast<const void *>(sqlite3_column_text(statement.get(), column)));
    const QByteArrayView utf8{bytes, sqlite3_column_bytes(statement.get(), column)};
    // The usual conversion, which is quicker, takes a first character without width for a mark of the
    // encoding and drops it.
    return utf8.startsWith("\xEF\xBB\xBF") ? keepingTheMark(utf8) : QString::fromUtf8(utf8);
}

qint64 SqliteStatement::integer(int column) const
{
    return sqlite3_column_int64(statement.get(), column);
}

double SqliteStatement::real(int column) const
{
    return sqlite3_column_double(statement.get(), column);
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt *pointer) const
{
    sqlite3_finalize(pointer);
}

SqliteConnection::SqliteConnection(const QString &path)
{
    sqlite3 *opened = nullptr;
    const int result =
        hasEndlessJournal(path) ? SQLITE_CANTOPEN : sqlite3_open(path.toUtf8().constData(), &opened);
    connection.reset(opened);
    if (result != SQLITE_OK) {
        console::printLine(u"无法打开数据库: "_s + path);
        return;
    }
    sqlite3_busy_handler(opened, waitForOthers, this);
    // Room for ten thousand rows of the history: with less they are sorted in a file on the disk.
    sqlite3_exec(opened, "PRAGMA cache_size = -32768;", nullptr, nullptr, nullptr);
}

int SqliteConnection::waitForOthers(void *self, int attempts)
{
    return static_cast<SqliteConnection *>(self)->waitALittle(attempts) ? 1 : 0;
}

bool SqliteConnection::waitALittle(int attempts)
{
    if (attempts == 0 && waiting == Waiting::each) {
        waited = {};
    }
    if (waiting == Waiting::none || waited >= longestWait) {
        return false;
    }
    // Most copies are done within milliseconds; one that is not need not be asked so often.
    const std::chrono::milliseconds pause{std::min(attempts + 1, 50)};
    const Clock::time_point before = Clock::now();
    std::this_thread::sleep_for(pause);
    waited += Clock::now() - before;
    return true;
}

void SqliteConnection::setWaiting(Waiting how)
{
    waiting = how;
}

void SqliteConnection::execute(const QString &sql)
{
    char *message = nullptr;
    const int result = sqlite3_exec(connection.get(), sql.toUtf8().constData(), nullptr, nullptr, &message);
    if (result != SQLITE_OK && message != nullptr) {
        console::printLine(u"SQL 错误: "_s + QString::fromUtf8(message));
    }
    sqlite3_free(message);
}

SqliteStatement SqliteConnection::prepare(const QString &sql)
{
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(connection.get(), sql.toUtf8().constData(), -1, &statement, nullptr) !=
        SQLITE_OK) {
        statement = nullptr;
    }
    return SqliteStatement{statement};
}

bool SqliteConnection::wasHeldByAnother() const
{
    return sqlite3_errcode(connection.get()) == SQLITE_BUSY;
}

QString SqliteConnection::quoted(const QString &text)
{
    QString doubled = text;
    doubled.replace(u'\'', u"''"_s);
    return u'\'' + doubled + u'\'';
}

QString SqliteConnection::pragma(const QString &text)
{
    SqliteStatement row = prepare(u"PRAGMA "_s + text + u';');
    return row && row.step() ? row.text(0) : QString{};
}

void SqliteConnection::Close::operator()(sqlite3 *pointer) const
{
    sqlite3_close_v2(pointer);
}

} // namespace quilmora
