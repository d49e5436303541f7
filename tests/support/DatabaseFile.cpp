#include "support/DatabaseFile.h"

#include <sqlite3.h>

namespace quilmora::test::databaseFile {
namespace {

Row readRow(sqlite3_stmt *statement)
{
    Row row;
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
        const void *bytes = sqlite3_column_text(statement, column);
        row.append(QByteArray{static_cast<const char *>(bytes), sqlite3_column_bytes(statement, column)});
    }
    return row;
}

} // namespace

QList<Row> run(const QString &path, const QByteArray &sql)
{
    sqlite3 *connection = nullptr;
    int result = sqlite3_open(path.toUtf8().constData(), &connection);
    QList<Row> rows;
    const char *rest = sql.constData();
    while (result == SQLITE_OK && *rest != '\0') {
        sqlite3_stmt *statement = nullptr;
        result = sqlite3_prepare_v2(connection, rest, -1, &statement, &rest);
        while (statement != nullptr && sqlite3_step(statement) == SQLITE_ROW) {
            rows.append(readRow(statement));
        }
        if (statement != nullptr) {
            result = sqlite3_finalize(statement);
        }
    }
    if (result != SQLITE_OK) {
        qFatal("%s: %s", sql.constData(), sqlite3_errmsg(connection));
    }
    sqlite3_close(connection);
    return rows;
}

QByteArray value(const QString &path, const QByteArray &sql)
{
    const QList<Row> rows = run(path, sql);
    if (rows.size() != 1 || rows.first().size() != 1) {
        qFatal("%s gives no single value", sql.constData());
    }
    return rows.first().constFirst();
}

} // namespace quilmora::test::databaseFile
