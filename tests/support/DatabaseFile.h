#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A database file seen with SQLite alone, past the application's own code.
namespace quilmora::test::databaseFile {

using Row = QList<QByteArray>;

/// Runs the statements in `sql` on the file at `path`, which is created if missing, and gives the rows that
/// they yield, each value as SQLite's text. The test ends with SQLite's message when one fails.
QList<Row> run(const QString &path, const QByteArray &sql);

/// The one value that `sql` yields.
QByteArray value(const QString &path, const QByteArray &sql);

} // namespace quilmora::test::databaseFile
