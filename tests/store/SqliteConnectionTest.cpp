#include "store/SqliteConnection.h"

#include "support/DatabaseFile.h"
#include "support/FailureNote.h"
#include "support/StandardOutput.h"
#include "support/TestProgram.h"

#include <QFile>
#include <QTemporaryDir>

#include <limits>
#include <memory>

using namespace quilmora;
using namespace quilmora::test;

class SqliteConnectionTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = m_folder->filePath(u"a.db"_s);
        m_connection = std::make_unique<SqliteConnection>(m_file);
        m_connection->execute(u"CREATE TABLE t (a);"_s);
    }

    void cleanup()
    {
        m_connection.reset();
        m_folder.reset();
    }

    void aFailedStatementPrintsSqlitesMessageOnOneLine()
    {
        QCOMPARE(standardOutputOf([this] { m_connection->execute(u"INSERT INTO missing VALUES (1);"_s); }),
                 QByteArray{"SQL 错误: no such table: missing\n"});
        QCOMPARE(standardOutputOf([this] { m_connection->execute(u"选\n择;"_s); }),
                 QByteArray{"SQL 错误: near \"选\": syntax error\n"});
        QCOMPARE(standardOutputOf([this] { m_connection->execute(u"SELECT \"a\nb\" FROM t;"_s); }),
                 QByteArray{});
        QCOMPARE(standardOutputOf([this] { m_connection->execute(u"SELECT * FROM \"a\nb\";"_s); }),
                 QByteArray{"SQL 错误: no such table: a b\n"});
    }

    void theStatementsBeforeAFailedOneStand()
    {
        const QByteArray output = standardOutputOf([this] {
            m_connection->execute(u"INSERT INTO t VALUES (1); INSERT INTO missing VALUES (1);"_s);
        });
        QCOMPARE(output.count('\n'), 1);
        QCOMPARE(databaseFile::value(m_file, "SELECT a FROM t"), QByteArray{"1"});
    }

    void columnsAreReadInTheirTypes()
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

    void aTextWithANulIsReadWhole()
    {
        SqliteStatement row = m_connection->prepare(u"SELECT CAST(x'610062' AS TEXT);"_s);
        QVERIFY(row.step());
        QCOMPARE(row.text(0), u"a\0b"_s);
    }

    void shortestDecimalsAreStoredExactly()
    {
        for (const double value :
             {1700000000.0, 1700000000.123456, 1700000000.0000002, 0.1, 0.0, -1.5, 1e-7, 1e21}) {
            const QString number = shortestDecimal(value);
            const FailureNote note{number.toUtf8()};
            // The point makes it a number with fractions even where the column does not ask for one.
            m_connection->execute(u"DELETE FROM t; INSERT INTO t VALUES ("_s + number + u");"_s);
            QCOMPARE(databaseFile::value(m_file, "SELECT typeof(a) FROM t"), QByteArray{"real"});
            SqliteStatement row = m_connection->prepare(u"SELECT a FROM t;"_s);
            QVERIFY(row.step());
            QVERIFY(row.real(0) == value);
        }
    }

    void statementsWaitFiveSecondsForAnotherCopy()
    {
        QVERIFY(SqliteConnection::busyTimeout == std::chrono::seconds{5});
    }

    void anyFileNameWillDo()
    {
        for (const QString &name : {u"数据 'a' \"b\" 😀.db"_s, u"100%25?mode=ro#x.db"_s, u"file:a.db"_s}) {
            const QByteArray output = standardOutputOf(
                [&] { SqliteConnection{m_folder->filePath(name)}.execute(u"CREATE TABLE t (a);"_s); });
            QCOMPARE(output, QByteArray{});
            QVERIFY2(QFile::exists(m_folder->filePath(name)), qPrintable(name));
        }
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    std::unique_ptr<SqliteConnection> m_connection;
};

QUILMORA_TEST(SqliteConnectionTest, runCoreTest)
#include "SqliteConnectionTest.moc"
