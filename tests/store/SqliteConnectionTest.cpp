#include "store/SqliteConnection.h"

#include "platform/NumberFormat.h"
#include "support/DatabaseFile.h"
#include "support/StandardOutput.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <future>
#include <limits>
#include <memory>
#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class SqliteConnectionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aFailedStatementPrintsSqlitesMessageOnOneLine();
    void theStatementsBeforeAFailedOneStand();
    void aStatementThatCannotBePreparedIsFalseAndPrintsNothing();
    void columnsAreReadInTheirTypes();
    void aTextWithANulIsReadWhole();
    void quotedTextsComeBack_data();
    void quotedTextsComeBack();
    void shortestDecimalsAreStoredExactly_data();
    void shortestDecimalsAreStoredExactly();
    void statementsWaitFiveSecondsForAnotherCopy();
    void aWriteWaitsForAnotherCopyOfTheProgram();
    void aPathThatCannotBeOpenedPrintsOneLineAndLeavesAUsableObject();
    void anyFileNameWillDo();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    std::unique_ptr<SqliteConnection> m_connection;
};

void SqliteConnectionTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath(u"a.db"_s);
    m_connection = std::make_unique<SqliteConnection>(m_file);
    m_connection->execute(u"CREATE TABLE t (a);"_s);
}

void SqliteConnectionTest::cleanup()
{
    m_connection.reset();
    m_folder.reset();
}

void SqliteConnectionTest::aFailedStatementPrintsSqlitesMessageOnOneLine()
{
    QCOMPARE(standardOutputOf([this] { m_connection->execute(u"INSERT INTO missing VALUES (1);"_s); }),
             QByteArray{"SQL 错误: no such table: missing\n"});
    QCOMPARE(standardOutputOf([this] { m_connection->execute(u"选\n择;"_s); }),
             QByteArray{"SQL 错误: near \"选\": syntax error\n"});
    QCOMPARE(standardOutputOf([this] { m_connection->execute(u"SELECT \"a\nb\" FROM t;"_s); }), QByteArray{});
    QCOMPARE(standardOutputOf([this] { m_connection->execute(u"SELECT * FROM \"a\nb\";"_s); }),
             QByteArray{"SQL 错误: no such table: a b\n"});
}

void SqliteConnectionTest::theStatementsBeforeAFailedOneStand()
{
    const QByteArray output = standardOutputOf(
        [this] { m_connection->execute(u"INSERT INTO t VALUES (1); INSERT INTO missing VALUES (1);"_s); });
    QCOMPARE(output.count('\n'), 1);
    QCOMPARE(databaseFile::value(m_file, "SELECT a FROM t"), QByteArray{"1"});
}

void SqliteConnectionTest::aStatementThatCannotBePreparedIsFalseAndPrintsNothing()
{
    bool usable = true;
    const QByteArray output = standardOutputOf(
        [&] { usable = static_cast<bool>(m_connection->prepare(u"SELECT a FROM missing;"_s)); });
    QVERIFY(!usable);
    QCOMPARE(output, QByteArray{});
    QVERIFY(m_connection->prepare(u"SELECT a FROM t;"_s));
}

void SqliteConnectionTest::columnsAreReadInTheirTypes()
{
    SqliteStatement row = m_connection->prepare(
        u"SELECT 9223372036854775807, '封面😀', 1700000000.25, NULL, '' UNION ALL SELECT 2, 3, 4, 5, 6;"_s);
    QVERIFY(row.step());
    QCOMPARE(row.integer(0), std::numeric_limits<qint64>::max());
    QCOMPARE(row.text(1), u"封面😀"_s);
    QVERIFY(row.real(2) == 1700000000.25);
    QVERIFY(row.isNull(3));
    QCOMPARE(row.text(3), QString{});
    QVERIFY(!row.isNull(4));
    QVERIFY(row.step());
    QCOMPARE(row.text(1), u"3"_s);
    QVERIFY(!row.step());
}

void SqliteConnectionTest::aTextWithANulIsReadWhole()
{
    SqliteStatement row = m_connection->prepare(u"SELECT CAST(x'610062' AS TEXT);"_s);
    QVERIFY(row.step());
    QCOMPARE(row.text(0), u"a\0b"_s);
}

void SqliteConnectionTest::quotedTextsComeBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("empty") << QString{} << u"''"_s;
    QTest::newRow("plain") << u"abc"_s << u"'abc'"_s;
    QTest::newRow("an apostrophe") << u"it's"_s << u"'it''s'"_s;
    QTest::newRow("two together") << u"''"_s << u"''''''"_s;
    QTest::newRow("nothing else is changed") << u"\"\\%_\n;--"_s << u"'\"\\%_\n;--'"_s;
}

void SqliteConnectionTest::quotedTextsComeBack()
{
    QFETCH(const QString, text);
    QFETCH(const QString, quoted);
    QCOMPARE(SqliteConnection::quoted(text), quoted);
    SqliteStatement row = m_connection->prepare(u"SELECT "_s + quoted + u';');
    QVERIFY(row && row.step());
    QCOMPARE(row.text(0), text);
}

void SqliteConnectionTest::shortestDecimalsAreStoredExactly_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("whole seconds") << 1700000000.0;
    QTest::newRow("microseconds") << 1700000000.123456;
    QTest::newRow("the next moment") << 1700000000.0000002;
    QTest::newRow("a tenth") << 0.1;
    QTest::newRow("nought") << 0.0;
    QTest::newRow("before 1970") << -1.5;
    QTest::newRow("1e-7") << 1e-7;
    QTest::newRow("1e21") << 1e21;
}

void SqliteConnectionTest::shortestDecimalsAreStoredExactly()
{
    QFETCH(const double, value);
    m_connection->execute(u"CREATE TABLE r (a REAL NOT NULL); INSERT INTO r VALUES ("_s +
                          shortestDecimal(value) + u"); INSERT INTO t VALUES ("_s + shortestDecimal(value) +
                          u");"_s);
    QCOMPARE(databaseFile::value(m_file, "SELECT typeof(a) FROM r"), QByteArray{"real"});
    // The point makes it a number with fractions even where the column does not ask for one.
    QCOMPARE(databaseFile::value(m_file, "SELECT typeof(a) FROM t"), QByteArray{"real"});
    SqliteStatement row = m_connection->prepare(u"SELECT a FROM r;"_s);
    QVERIFY(row.step());
    QVERIFY(row.real(0) == value);
}

void SqliteConnectionTest::statementsWaitFiveSecondsForAnotherCopy()
{
    QVERIFY(SqliteConnection::busyTimeout == std::chrono::seconds{5});
}

void SqliteConnectionTest::aWriteWaitsForAnotherCopyOfTheProgram()
{
    sqlite3 *other = nullptr;
    QCOMPARE(sqlite3_open(m_file.toUtf8().constData(), &other), SQLITE_OK);
    QCOMPARE(sqlite3_exec(other, "BEGIN EXCLUSIVE; INSERT INTO t VALUES (1)", nullptr, nullptr, nullptr),
             SQLITE_OK);
    // The other copy ends its own write once this one has begun.
    std::promise<void> begun;
    const auto written = std::async(std::launch::async, [other, begins = begun.get_future()] {
        begins.wait();
        return sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr);
    });
    const QByteArray output = standardOutputOf([&] {
        begun.set_value();
        m_connection->execute(u"INSERT INTO t VALUES (2);"_s);
    });
    written.wait();
    sqlite3_close(other);
    QCOMPARE(output, QByteArray{});
    QCOMPARE(databaseFile::value(m_file, "SELECT group_concat(a) FROM t"), QByteArray{"1,2"});
}

void SqliteConnectionTest::aPathThatCannotBeOpenedPrintsOneLineAndLeavesAUsableObject()
{
    const QString path = m_folder->filePath(u"缺失/a.db"_s);
    bool readable = true;
    const QByteArray output = standardOutputOf([&] {
        SqliteConnection broken{path};
        broken.execute(u"CREATE TABLE t (a);"_s);
        readable = static_cast<bool>(broken.prepare(u"SELECT 1;"_s));
    });
    QCOMPARE(output, u"无法打开数据库: %1\n"_s.arg(path).toUtf8());
    QVERIFY(!readable);
}

void SqliteConnectionTest::anyFileNameWillDo()
{
    for (const QString &name : {u"数据 'a' \"b\" 😀.db"_s, u"100%25?mode=ro#x.db"_s, u"file:a.db"_s}) {
        const QByteArray output = standardOutputOf(
            [&] { SqliteConnection{m_folder->filePath(name)}.execute(u"CREATE TABLE t (a);"_s); });
        QCOMPARE(output, QByteArray{});
        QVERIFY2(QFile::exists(m_folder->filePath(name)), qPrintable(name));
    }
}

QUILMORA_TEST(SqliteConnectionTest, runCoreTest)
#include "SqliteConnectionTest.moc"
