#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QTest>

#include <csignal>
#include <limits>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

/// Histories that this version would not have made itself: a newer version's, or another program's.
class OtherHistoryTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aNewerVersionsDatabaseWorksAndKeepsItsColumns()
    {
        sql("CREATE TABLE history (stars INTEGER DEFAULT 3, model_id TEXT NOT NULL DEFAULT '', created_at "
            "REAL "
            "NOT NULL,"
            "image_path TEXT NOT NULL, prompt TEXT NOT NULL, id INTEGER PRIMARY KEY AUTOINCREMENT, tags "
            "TEXT);"
            "INSERT INTO history VALUES (5, 'm', 1.0, '~/a.png', 'p', 8, '海边')");
        addCover(u"b.png"_s);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT * FROM history WHERE id = 8"),
                 (Rows{{"5", "m", "1.0", "~/a.png", "p", "8", "海边"}}));
        QCOMPARE(sql("SELECT id, stars, image_path, tags IS NULL FROM history WHERE id > 8"),
                 (Rows{{"9", "3", stored("b.png"), "1"}}));
        open();
        m_database->insertHistory(u"q"_s, u"~/c.png"_s, u"n"_s);
        const QList<HistoryRecord> records = m_database->fetchAllHistory();
        QCOMPARE(records.size(), 3);
        QCOMPARE(records.constFirst().prompt, u"q"_s);
        QCOMPARE(records.constLast().modelID, u"m"_s);
    }

    void aNewerVersionsRequiredColumnIsReportedAndNothingIsLost()
    {
        sql("CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT, image_path TEXT, created_at REAL, "
            "model_id TEXT, owner TEXT NOT NULL); INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm', "
            "'me')");
        addCover(u"b.png"_s);
        QCOMPARE(start(), QByteArray{"SQL 错误: NOT NULL constraint failed: history.owner\n"});
        QCOMPARE(history(), (Rows{{"1", "p", "~/a.png", "1.0", "m"}}));
    }

    void valuesOfOtherTypesAreReadAsTexts()
    {
        sql(untyped + QByteArray{"INSERT INTO history VALUES (1, 42, x'7e2f612e706e67', 4, 1.5);"
                                 "INSERT INTO history VALUES (2, x'', x'ff00fe', 3, x'e5b081');"
                                 "INSERT INTO history VALUES (3, -1.0e300, 7, 9e999, '');"
                                 "INSERT INTO history VALUES (4, 'p', 'a', x'ff', 'm');"
                                 "INSERT INTO history VALUES (5, 'p', 'a', NULL, 'm')"});
        QList<HistoryRecord> records;
        const QByteArray output = standardOutputOf([&] {
            open();
            records = m_database->fetchAllHistory();
        });
        QCOMPARE(output, QByteArray{});
        QCOMPARE(records.size(), 5);
        QMap<qint64, HistoryRecord> byID;
        for (const HistoryRecord &record : records) {
            byID.insert(record.id, record);
        }
        QCOMPARE(byID.value(1).prompt, u"42"_s);
        QCOMPARE(byID.value(1).imagePath, u"~/a.png"_s);
        QCOMPARE(byID.value(1).modelID, u"1.5"_s);
        QVERIFY(byID.value(1).createdAt == fromSecondsSince1970(4));
        QCOMPARE(byID.value(2).prompt, QString{});
        QCOMPARE(byID.value(2).modelID, u"封"_s);
        QCOMPARE(byID.value(3).imagePath, u"7"_s);
        QVERIFY(secondsSince1970(byID.value(3).createdAt) == std::numeric_limits<double>::infinity());
        QVERIFY(byID.value(4).createdAt == fromSecondsSince1970(0));
        QVERIFY(byID.value(5).createdAt == fromSecondsSince1970(0));
        for (const HistoryRecord &record : records) {
            QVERIFY(record.image().isNull());
            localDateText(record.createdAt, u"yyyyMMdd_HHmmss"_s);
        }
    }

    void textsInTheTimeReadAsNumbersWhereTheyCan()
    {
        sql("CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT NOT NULL, image_path TEXT NOT NULL, "
            "created_at TEXT NOT NULL, model_id TEXT NOT NULL);"
            "INSERT INTO history VALUES (1, 'p', '', '1700000000.25', '');"
            "INSERT INTO history VALUES (2, 'p', '', '2025-03-02 14:03', '');"
            "INSERT INTO history VALUES (3, 'p', '', '昨天', '')");
        open();
        QMap<qint64, double> times;
        for (const HistoryRecord &record : m_database->fetchAllHistory()) {
            times.insert(record.id, secondsSince1970(record.createdAt));
        }
        QCOMPARE(times, (QMap<qint64, double>{{1, 1700000000.25}, {2, 2025.0}, {3, 0.0}}));
    }

    void idsThatAreNoNumbersAreRead()
    {
        sql("CREATE TABLE history (id TEXT PRIMARY KEY, prompt TEXT, image_path TEXT, created_at REAL, "
            "model_id "
            "TEXT);"
            "INSERT INTO history VALUES ('7', 'p', '~/a.png', 2.0, 'm');"
            "INSERT INTO history VALUES ('abc', 'q', '~/b.png', 1.0, 'm')");
        addCover(u"c.png"_s);
        QCOMPARE(start(), QByteArray{});
        open();
        const QList<HistoryRecord> records = m_database->fetchAllHistory();
        QCOMPARE(records.size(), 3);
        QCOMPARE(records.at(0).imagePath.toUtf8(), stored("c.png"));
        QCOMPARE(records.at(1).id, 7);
        QCOMPARE(records.at(2).prompt, u"q"_s);
    }

    void aHistoryWithoutItsColumnsReadsAsEmpty()
    {
        sql("CREATE TABLE history (model_id TEXT); INSERT INTO history VALUES ('kept')");
        addCover(u"a.png"_s);
        addCover(u"b.png"_s);
        const QByteArray line = "SQL 错误: table history has no column named prompt\n";
        QCOMPARE(start(), line + line);
        standardOutputOf([this] { open(); });
        QVERIFY(m_database->fetchAllHistory().isEmpty());
        QCOMPARE(sql("SELECT * FROM history"), (Rows{{"kept"}}));
    }

    void aNullInATextColumnIsFatal_data()
    {
        QTest::addColumn<QByteArray>("values");
        QTest::addColumn<bool>("fatal");
        QTest::newRow("prompt") << QByteArray{"1, NULL, 'a', 1.0, 'm'"} << true;
        QTest::newRow("path") << QByteArray{"1, 'p', NULL, 1.0, 'm'"} << true;
        QTest::newRow("model") << QByteArray{"1, 'p', 'a', 1.0, NULL"} << true;
        QTest::newRow("none") << QByteArray{"1, '', '', 1.0, ''"} << false;
    }

    void aNullInATextColumnIsFatal()
    {
        QFETCH(const QByteArray, values);
        QFETCH(const bool, fatal);
        sql(untyped + QByteArray{"INSERT INTO history VALUES (" + values + ")"});
        const auto outcome = childProcess::run([this] {
            DatabaseManager database{folder(), covers()};
            _exit(database.fetchAllHistory().size() == 1 ? 0 : 1);
        });
        QCOMPARE(outcome.signal, fatal ? SIGABRT : 0);
        QCOMPARE(outcome.exitCode, fatal ? -1 : 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
    }

private:
    static constexpr const char *untyped =
        "CREATE TABLE history (id INTEGER PRIMARY KEY, prompt, image_path, created_at, model_id);";
};

QUILMORA_TEST(OtherHistoryTest, runCoreTest)
#include "OtherHistoryTest.moc"
