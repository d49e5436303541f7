#include "store/SqliteConnection.h"

#include "platform/Console.h"

#include <array>
#include <charconv>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace quilmora {

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
    QString text = QString::fromUtf8(utf8);
    if (utf8.startsWith("\xEF\xBB\xBF")) {
        // Dropped by the conversion.
        text.prepend(QChar::ByteOrderMark);
    }
    return text;
}

qint64 SqliteStatement::integer(int column) const { return sqlite3_column_int64(m_statement.get(), column); }

double SqliteStatement::real(int column) const { return sqlite3_column_double(m_statement.get(), column); }

void SqliteStatement::Finalize::operator()(sqlite3_stmt *pointer) const { sqlite3_finalize(pointer); }

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
    // Enough for ten thousand rows of the history; with less they are sorted in a file on the disk.
    noteResult(sqlite3_exec(opened, "PRAGMA cache_size = -32768;", nullptr, nullptr, nullptr));
}

void SqliteConnection::waitEachTime()
{
    m_waitsOnlyOnce = false;
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

bool SqliteConnection::wasBusy() const { return sqlite3_errcode(m_connection.get()) == SQLITE_BUSY; }

bool SqliteConnection::isInTransaction() const { return sqlite3_get_autocommit(m_connection.get()) == 0; }

QString SqliteConnection::quoted(const QString &text)
{
    QString doubled = text;
    doubled.replace(u'\'', u"''"_s);
    return u'\'' + doubled + u'\'';
}

void SqliteConnection::Close::operator()(sqlite3 *pointer) const { sqlite3_close_v2(pointer); }

QString shortestDecimal(double value)
{
    // The longest text, of the smallest subnormal, has "-0." and 323 zeros before its digits.
    std::array<char, 400> buffer{};
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    const QString text = QString::fromLatin1(buffer.data(), written.ptr - buffer.data());
    return text.contains(u'.') ? text : text + u".0"_s;
}

} // namespace quilmora
