#include "store/QuickCommits.h"

#include "StoreFixture.h"
#include "store/SqliteConnection.h"

#include <QTest>

#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

class QuickCommitsTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void meanwhileTheDiskIsNotWaitedFor();
    void afterwardsEverythingIsAsBefore();
    void othersMayWriteAfterwards();
    void eachStatementStandsByItself();
    void theNextStartTakesInTheLogOfOneThatWasKilled();
    void aLogThatAnotherProgramUsesStays();
    void aDiskWithLittleRoomGetsNoLog();
    void aDiskThatFillsUpMeanwhileCostsOnlyTheLastRows();
    void aDatabaseThatMayOnlyBeReadIsLeftAsItIs();
    void aDatabaseInAnotherModeIsLeftInIt();
    void whereThereIsNoDatabaseNothingHappens();

private:
    static constexpr int cannotMount = 3;
    static constexpr qint64 mebibyte = qint64{1024} * 1024;

    static QString pragma(SqliteConnection &connection, const QString &name)
    {
        SqliteStatement row = connection.prepare(u"PRAGMA "_s + name + u';');
        return row && row.step() ? row.text(0) : u"nothing"_s;
    }
    QStringList files() const { return QDir{folder()}.entryList(QDir::Files | QDir::Hidden); }
};

void QuickCommitsTest::meanwhileTheDiskIsNotWaitedFor()
{
    sql("CREATE TABLE t (a)");
    SqliteConnection connection{file()};
    const QuickCommits quick{connection};
    QCOMPARE(pragma(connection, u"journal_mode"_s), u"wal"_s);
    QCOMPARE(pragma(connection, u"synchronous"_s), u"1"_s);
}

void QuickCommitsTest::afterwardsEverythingIsAsBefore()
{
    sql("CREATE TABLE t (a)");
    SqliteConnection connection{file()};
    const QByteArray output = standardOutputOf([&] {
        const QuickCommits quick{connection};
        connection.execute(u"INSERT INTO t VALUES (1);"_s);
        connection.execute(u"INSERT INTO t VALUES (2);"_s);
    });
    QCOMPARE(output, QByteArray{});
    QCOMPARE(files(), QStringList{u"quilmora.db"_s});
    QCOMPARE(pragma(connection, u"journal_mode"_s), u"delete"_s);
    QCOMPARE(pragma(connection, u"synchronous"_s), u"2"_s);
    QCOMPARE(pragma(connection, u"locking_mode"_s), u"normal"_s);
    QCOMPARE(sql("SELECT a FROM t"), (Rows{{"1"}, {"2"}}));
}

void QuickCommitsTest::othersMayWriteAfterwards()
{
    sql("CREATE TABLE t (a)");
    SqliteConnection connection{file()};
    {
        const QuickCommits quick{connection};
        connection.execute(u"INSERT INTO t VALUES (1);"_s);
    }
    sql("INSERT INTO t VALUES (2)");
    connection.execute(u"INSERT INTO t VALUES (3);"_s);
    QCOMPARE(sql("SELECT a FROM t"), (Rows{{"1"}, {"2"}, {"3"}}));
}

void QuickCommitsTest::eachStatementStandsByItself()
{
    sql("CREATE TABLE t (a)");
    const auto outcome = childProcess::run([this] {
        SqliteConnection connection{file()};
        const QuickCommits quick{connection};
        connection.execute(u"INSERT INTO t VALUES (1);"_s);
        connection.execute(u"INSERT INTO missing VALUES (2);"_s);
        connection.execute(u"INSERT INTO t VALUES (3);"_s);
        // The program dies.
        _exit(0);
    });
    QCOMPARE(outcome.standardOutput, QByteArray{"SQL 错误: no such table: missing\n"});
    QCOMPARE(sql("SELECT a FROM t"), (Rows{{"1"}, {"3"}}));
    // The next start finds a usable database.
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(sql("SELECT a FROM t"), (Rows{{"1"}, {"3"}}));
}

void QuickCommitsTest::theNextStartTakesInTheLogOfOneThatWasKilled()
{
    start();
    childProcess::run([this] {
        SqliteConnection connection{file()};
        const QuickCommits quick{connection};
        connection.execute(u"CREATE TABLE t (a);"_s);
        connection.execute(u"INSERT INTO t VALUES (1);"_s);
        _exit(0);
    });
    QVERIFY(files().contains(u"quilmora.db-wal"_s));
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(files(), QStringList{u"quilmora.db"_s});
    QCOMPARE(sql("PRAGMA journal_mode; SELECT a FROM t"), (Rows{{"delete"}, {"1"}}));
}

void QuickCommitsTest::aLogThatAnotherProgramUsesStays()
{
    start();
    sql("PRAGMA journal_mode = WAL");
    SqliteConnection other{file()};
    QCOMPARE(pragma(other, u"journal_mode"_s), u"wal"_s);
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(sql("PRAGMA journal_mode"), (Rows{{"wal"}}));
}

void QuickCommitsTest::aDiskWithLittleRoomGetsNoLog()
{
    const auto outcome = childProcess::run([this] {
        if (!childProcess::mountSmallDisk(home->path(), mebibyte)) {
            _exit(cannotMount);
        }
        sql("CREATE TABLE t (a)");
        SqliteConnection connection{file()};
        const QuickCommits quick{connection};
        _exit(pragma(connection, u"journal_mode"_s) == u"delete"_s ? 0 : 1);
    });
    if (outcome.exitCode == cannotMount) {
        QSKIP("No disk can be mounted here");
    }
    QCOMPARE(outcome.exitCode, 0);
}

void QuickCommitsTest::aDiskThatFillsUpMeanwhileCostsOnlyTheLastRows()
{
    const auto outcome = childProcess::run([this] {
        if (!childProcess::mountSmallDisk(home->path(), 80 * mebibyte)) {
            _exit(cannotMount);
        }
        sql("CREATE TABLE t (a); INSERT INTO t VALUES (0)");
        const QString filler = home->path(u"filler"_s);
        {
            SqliteConnection connection{file()};
            const QuickCommits quick{connection};
            connection.execute(u"INSERT INTO t VALUES (1);"_s);
            QFile full{filler};
            full.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
            while (full.write(QByteArray(4096, 'f')) == 4096) {
            }
            connection.execute(u"INSERT INTO t VALUES (zeroblob(9000));"_s);
        }
        QFile::remove(filler);
        const QByteArray output = start();
        const bool isPlain = files() == QStringList{u"quilmora.db"_s};
        const bool isThere = sql("SELECT a FROM t; PRAGMA integrity_check") == Rows{{"0"}, {"1"}, {"ok"}};
        _exit(output.isEmpty() && isPlain && isThere ? 0 : 1);
    });
    if (outcome.exitCode == cannotMount) {
        QSKIP("No disk can be mounted here");
    }
    QCOMPARE(outcome.standardOutput, QByteArray{"SQL 错误: database or disk is full\n"});
    QCOMPARE(outcome.exitCode, 0);
}

void QuickCommitsTest::aDatabaseThatMayOnlyBeReadIsLeftAsItIs()
{
    sql("CREATE TABLE t (a); INSERT INTO t VALUES (1)");
    setMode(file(), 0444);
    const auto outcome = childProcess::run([this] {
        childProcess::becomeOrdinaryUser();
        SqliteConnection connection{file()};
        {
            const QuickCommits quick{connection};
        }
        _exit(pragma(connection, u"journal_mode"_s) == u"delete"_s ? 0 : 1);
    });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
    QCOMPARE(sql("SELECT a FROM t"), (Rows{{"1"}}));
}

void QuickCommitsTest::aDatabaseInAnotherModeIsLeftInIt()
{
    sql("CREATE TABLE t (a); PRAGMA journal_mode = WAL");
    SqliteConnection connection{file()};
    {
        const QuickCommits quick{connection};
        QCOMPARE(pragma(connection, u"synchronous"_s), u"2"_s);
    }
    QCOMPARE(pragma(connection, u"journal_mode"_s), u"wal"_s);
}

void QuickCommitsTest::whereThereIsNoDatabaseNothingHappens()
{
    const QByteArray output = standardOutputOf([this] {
        SqliteConnection connection{folder() + u"/missing/quilmora.db"_s};
        const QuickCommits quick{connection};
        connection.execute(u"SELECT 1;"_s);
    });
    QCOMPARE(output.count('\n'), 1);
    QVERIFY(output.startsWith("无法打开数据库: "));
}

QTEST_GUILESS_MAIN(QuickCommitsTest)
#include "QuickCommitsTest.moc"
