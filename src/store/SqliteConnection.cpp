#include "store/SqliteConnection.h"

#include "platform/Console.h"

#include <QStringDecoder>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

QString keepingTheMark(QByteArrayView utf8)
{
    QStringDecoder decoder{QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom};
    return decoder(utf8);
}

} // namespace

SqliteStatement::SqliteStatement(sqlite3_stmt *prepared) : m_statement{prepared} {}

bool SqliteStatement::step()
{
    const int result = sqlite3_step(m_statement.get());
    m_failed = result != SQLITE_ROW && result != SQLITE_DONE;
    return result == SQLITE_ROW;
}

bool SqliteStatement::isNull(int column) const
{
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

QString SqliteStatement::text(int column) const
{
    const auto *bytes =
        static_cast<const char *>(static_cast<const void *>(sqlite3_column_text(m_statement.get(), column)));
    const QByteArrayView utf8{bytes, sqlite3_column_bytes(m_statement.get(), column)};
    // The usual conversion, which is quicker, takes a first character without width for a mark of the
    // encoding and drops it.
    return utf8.startsWith("\xEF\xBB\xBF") ? keepingTheMark(utf8) : QString::fromUtf8(utf8);
}

qint64 SqliteStatement::integer(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

double SqliteStatement::real(int column) const
{
    return sqlite3_column_double(m_statement.get(), column);
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt *pointer) const
{
    sqlite3_finalize(pointer);
}

SqliteConnection::SqliteConnection(const QString &path)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open(path.toUtf8().constData(), &opened);
    m_connection.reset(opened);
    if (result != SQLITE_OK) {
        console::printLine(u"无法打开数据库: "_s + path);
        return;
    }
    setBusyTimeout(busyTimeout);
    // Room for ten thousand rows of the history: with less they are sorted in a file on the disk.
    noteResult(sqlite3_exec(opened, "PRAGMA cache_size = -32768;", nullptr, nullptr, nullptr));
}

void SqliteConnection::setWaitsOnlyOnce(bool once)
{
    m_waitsOnlyOnce = once;
    setBusyTimeout(busyTimeout);
}

void SqliteConnection::setBusyTimeout(std::chrono::milliseconds timeout)
{
    sqlite3_busy_timeout(m_connection.get(), static_cast<int>(timeout.count()));
}

void SqliteConnection::noteResult(int result)
{
    if (result == SQLITE_BUSY && m_waitsOnlyOnce) {
        setBusyTimeout({});
    }
}

void SqliteConnection::execute(const QString &sql)
{
    char *message = nullptr;
    const int result = sqlite3_exec(m_connection.get(), sql.toUtf8().constData(), nullptr, nullptr, &message);
    if (result != SQLITE_OK && message != nullptr) {
        console::printLine(u"SQL 错误: "_s + QString::fromUtf8(message));
    }
    sqlite3_free(message);
    noteResult(result);
}

SqliteStatement SqliteConnection::prepare(const QString &sql)
{
    sqlite3_stmt *statement = nullptr;
    noteResult(sqlite3_prepare_v2(m_connection.get(), sql.toUtf8().constData(), -1, &statement, nullptr));
    return SqliteStatement{statement};
}

bool SqliteConnection::wasBusy() const
{
    return sqlite3_errcode(m_connection.get()) == SQLITE_BUSY;
}

bool SqliteConnection::isInTransaction() const
{
    return sqlite3_get_autocommit(m_connection.get()) == 0;
}

QString SqliteConnection::quoted(const QString &text)
{
    QString doubled = text;
    doubled.replace(u'\'', u"''"_s);
    return u'\'' + doubled + u'\'';
}

void SqliteConnection::Close::operator()(sqlite3 *pointer) const
{
    sqlite3_close_v2(pointer);
}

} // namespace quilmora
