#include "StoreFixture.h"
#include "support/DatabaseLocker.h"
#include "support/TestProgram.h"

#include <QTest>

#include <functional>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

using Action = std::function<void(DatabaseManager &)>;

const QByteArray heldLine{"SQL 错误: database is locked\n"};

} // namespace

/// What happens while another process holds the database: for a second, and for longer than anybody waits. A
/// copy of the process that takes longer than one such wait is ended as hanging.
class BusyDatabaseTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aSecondIsWaitedForAtTheStart();
    void aSecondIsWaitedFor_data();
    void aSecondIsWaitedFor();
    void theStartWaitsOnceAndTouchesNothing_data();
    void theStartWaitsOnceAndTouchesNothing();
    void whileAnotherWritesTheStartReadsAndWaitsOnce();
    void anActionGivesUpAndTheNextOneWorks_data();
    void anActionGivesUpAndTheNextOneWorks();

private:
    /// Settings and three covers of which one has a row.
    void fill() const
    {
        start();
        sql("UPDATE volc_config SET api_key = 'key'; INSERT INTO history VALUES (7, 'p', '" +
            stored("a.png") + "', 1.0, 'm')");
        for (const QString &name : {u"a.png"_s, u"b.png"_s, u"c.png"_s}) {
            addCover(name);
        }
    }
    /// Uses the store once it is there: 0 if everything works.
    int useAll(DatabaseManager &database) const
    {
        database.saveConfig(u"https://a"_s, u"new key"_s, u"m"_s);
        database.insertHistory(u"new"_s, u"~/new.png"_s, u"m"_s);
        const QList<HistoryRecord> records = database.fetchAllHistory();
        return database.getConfig().apiKey == u"new key"_s && !records.isEmpty() &&
                       records.constFirst().prompt == u"new"_s
                   ? 0
                   : 1;
    }
};

void BusyDatabaseTest::aSecondIsWaitedForAtTheStart()
{
    fill();
    const DatabaseLocker holder{file(), DatabaseLocker::Lock::exclusive, std::chrono::seconds{1}};
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("b.png"), stored("c.png")}));
}

void BusyDatabaseTest::aSecondIsWaitedFor_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QByteArray>("outcome");
    QTest::newRow("settings saved") << Action{[](DatabaseManager &database) {
        database.saveConfig(u"u"_s, u"k2"_s, u"m"_s);
    }} << QByteArray{"k2 1"};
    QTest::newRow("a cover recorded") << Action{[](DatabaseManager &database) {
        database.insertHistory(u"p"_s, u"i"_s, u"m"_s);
    }} << QByteArray{"key 2"};
    QTest::newRow("a cover removed") << Action{[](DatabaseManager &database) {
        database.deleteHistory(7);
    }} << QByteArray{"key 0"};
    QTest::newRow("settings read") << Action{[](DatabaseManager &database) {
        if (database.getConfig().apiKey != u"key"_s) {
            qFatal("The settings were not read");
        }
    }} << QByteArray{"key 1"};
    QTest::newRow("history read") << Action{[](DatabaseManager &database) {
        if (database.fetchAllHistory().size() != 1) {
            qFatal("The history was not read");
        }
    }} << QByteArray{"key 1"};
}

void BusyDatabaseTest::aSecondIsWaitedFor()
{
    QFETCH(const Action, action);
    QFETCH(const QByteArray, outcome);
    start();
    sql("UPDATE volc_config SET api_key = 'key'; INSERT INTO history VALUES (7, 'p', 'i', 1.0, 'm')");
    DatabaseManager database{folder(), covers()};
    const DatabaseLocker holder{file(), DatabaseLocker::Lock::exclusive, std::chrono::seconds{1}};
    QCOMPARE(standardOutputOf([&] { action(database); }), QByteArray{});
    QCOMPARE(sql("SELECT api_key || ' ' || (SELECT count(*) FROM history) FROM volc_config"),
             (Rows{{outcome}}));
}

void BusyDatabaseTest::theStartWaitsOnceAndTouchesNothing_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::newRow("the present layout") << QByteArray{};
    QTest::newRow("an older layout") << QByteArray{
        "ALTER TABLE history RENAME COLUMN model_id TO model_key; UPDATE history SET model_key = 'old'"};
}

void BusyDatabaseTest::theStartWaitsOnceAndTouchesNothing()
{
    QFETCH(const QByteArray, change);
    fill();
    sql(change);
    const Rows before = everything();
    const auto outcome = childProcess::run([this] {
        const DatabaseLocker holder{file()};
        DatabaseManager database{folder(), covers()};
    });
    // The two tables. What is in the file is not known: no column is added, no cover adopted.
    QCOMPARE(outcome.standardOutput, heldLine.repeated(2));
    QCOMPARE(outcome.signal, 0);
    QCOMPARE(everything(), before);
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(sql("SELECT count(*), count(DISTINCT image_path) FROM history"), (Rows{{"3", "3"}}));
}

void BusyDatabaseTest::whileAnotherWritesTheStartReadsAndWaitsOnce()
{
    fill();
    const Rows before = everything();
    const auto outcome = childProcess::run([this] {
        const DatabaseLocker holder{file(), DatabaseLocker::Lock::writing};
        DatabaseManager database{folder(), covers()};
        _exit(database.getConfig().apiKey == u"key"_s && database.fetchAllHistory().size() == 1 ? 0 : 1);
    });
    // The two covers without a row.
    QCOMPARE(outcome.standardOutput, heldLine.repeated(2));
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(everything(), before);
}

void BusyDatabaseTest::anActionGivesUpAndTheNextOneWorks_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("a cover recorded") << Action{[](DatabaseManager &database) {
        database.insertHistory(u"p"_s, u"i"_s, u"m"_s);
    }} << heldLine;
    QTest::newRow("history read") << Action{[](DatabaseManager &database) {
        if (!database.fetchAllHistory().isEmpty()) {
            qFatal("The history was read");
        }
    }} << QByteArray{};
}

void BusyDatabaseTest::anActionGivesUpAndTheNextOneWorks()
{
    QFETCH(const Action, action);
    QFETCH(const QByteArray, lines);
    fill();
    start();
    const Rows before = everything();
    const auto outcome = childProcess::run([&] {
        DatabaseManager database{folder(), covers()};
        {
            const DatabaseLocker holder{file()};
            action(database);
        }
        if (everything() != before) {
            _exit(2);
        }
        _exit(useAll(database));
    });
    QCOMPARE(outcome.standardOutput, lines);
    QCOMPARE(outcome.exitCode, 0);
}

QUILMORA_TEST(BusyDatabaseTest, runCoreTest)
#include "BusyDatabaseTest.moc"
