#include "StoreFixture.h"

#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

/// What becomes of a history that cannot be migrated, and of what an interrupted migration left.
class HistoryMigrationFailureTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aRowWithoutAModelKeyCostsTheOldRowsAndIsToldOnce();
    void coversOfLostRowsAreAdoptedAtOnce();
    void aRunInterruptedBeforeTheCopyLeavesTheOldRowsAside();
    void aRunInterruptedBeforeTheDropLeavesBothTables();
    void anOldTableInTheWayGoesAndTheNextStartMigrates();
    void aDatabaseThatMayOnlyBeReadKeepsItsOldRows_data();
    void aDatabaseThatMayOnlyBeReadKeepsItsOldRows();
    void aViewIsLeftAlone_data();
    void aViewIsLeftAlone();
    void aColumnNamedInCapitalsIsToldAndUsed();

private:
    /// The number of lines in `output`, -1 when one is not the store's own.
    static qsizetype errorLines(const QByteArray &output)
    {
        const QByteArrayList lines = output.split('\n');
        for (const QByteArray &line : lines.first(lines.size() - 1)) {
            if (!line.startsWith("SQL 错误: ")) {
                return -1;
            }
        }
        return lines.size() - 1;
    }

    static QByteArray tableWithKey(const QByteArray &name)
    {
        return "CREATE TABLE " + name +
               " (id INTEGER PRIMARY KEY AUTOINCREMENT, prompt TEXT NOT NULL, image_path TEXT NOT NULL, "
               "created_at REAL NOT NULL, model_key TEXT);";
    }
};

void HistoryMigrationFailureTest::aRowWithoutAModelKeyCostsTheOldRowsAndIsToldOnce()
{
    sql(tableWithKey("history") + "INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm');"
                                  "INSERT INTO history VALUES (2, 'q', '~/b.png', 2.0, NULL)");
    QCOMPARE(start(), QByteArray{"SQL 错误: NOT NULL constraint failed: history.model_id\n"});
    QVERIFY(history().isEmpty());
    QCOMPARE(sql("SELECT name FROM sqlite_master WHERE name LIKE '%history%'"), (Rows{{"history"}}));
    QCOMPARE(start(), QByteArray{});
}

void HistoryMigrationFailureTest::coversOfLostRowsAreAdoptedAtOnce()
{
    sql(tableWithKey("history") + "INSERT INTO history VALUES (1, 'p', '" + stored("a.png") +
        "', 1.0, NULL)");
    addCover(u"a.png"_s);
    QCOMPARE(start().count('\n'), 1);
    QCOMPARE(sql("SELECT prompt, image_path FROM history"),
             (Rows{{"(历史图片，已自动补录)", stored("a.png")}}));
}

void HistoryMigrationFailureTest::aRunInterruptedBeforeTheCopyLeavesTheOldRowsAside()
{
    sql(tableWithKey("history_old") + "INSERT INTO history_old VALUES (4, 'p', '~/a.png', 1.0, 'm')");
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(start(), QByteArray{});
        QVERIFY(history().isEmpty());
        QCOMPARE(sql("SELECT * FROM history_old"), (Rows{{"4", "p", "~/a.png", "1.0", "m"}}));
    }
}

void HistoryMigrationFailureTest::aRunInterruptedBeforeTheDropLeavesBothTables()
{
    start();
    sql(tableWithKey("history_old") + "INSERT INTO history_old VALUES (4, 'p', '~/a.png', 1.0, 'm');"
                                      "INSERT INTO history VALUES (4, 'p', '~/a.png', 1.0, 'm')");
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(history(), (Rows{{"4", "p", "~/a.png", "1.0", "m"}}));
        QCOMPARE(sql("SELECT * FROM history_old"), (Rows{{"4", "p", "~/a.png", "1.0", "m"}}));
    }
}

void HistoryMigrationFailureTest::anOldTableInTheWayGoesAndTheNextStartMigrates()
{
    sql(tableWithKey("history") + tableWithKey("history_old") +
        "INSERT INTO history_old VALUES (4, 'old', '~/a.png', 1.0, 'm');"
        "INSERT INTO history VALUES (9, 'p', '~/b.png', 2.0, 'n')");
    // Renaming, creating and copying fail; dropping does not.
    const QByteArray output = start();
    QCOMPARE(errorLines(output), 3);
    QVERIFY(
        output.contains("SQL 错误: there is already another table or index with this name: history_old\n"));
    QCOMPARE(sql("SELECT * FROM history"), (Rows{{"9", "p", "~/b.png", "2.0", "n"}}));
    QCOMPARE(sql("SELECT name FROM sqlite_master WHERE name LIKE '%history%'"), (Rows{{"history"}}));
    QCOMPARE(start(), QByteArray{});
    QCOMPARE(history(), (Rows{{"9", "p", "~/b.png", "2.0", "n"}}));
}

void HistoryMigrationFailureTest::aDatabaseThatMayOnlyBeReadKeepsItsOldRows_data()
{
    QTest::addColumn<QByteArray>("column");
    QTest::addColumn<qsizetype>("lines");
    QTest::newRow("model_key") << QByteArray{", model_key TEXT"} << qsizetype{4};
    QTest::newRow("no model") << QByteArray{} << qsizetype{1};
}

void HistoryMigrationFailureTest::aDatabaseThatMayOnlyBeReadKeepsItsOldRows()
{
    QFETCH(const QByteArray, column);
    QFETCH(const qsizetype, lines);
    start();
    sql("DROP TABLE history; CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT, image_path TEXT, "
        "created_at REAL" +
        column + "); INSERT INTO history (prompt) VALUES ('p')");
    const Rows before = everything();
    setMode(folder(), 0755);
    setMode(file(), 0444);
    const auto outcome = startAsOrdinaryUser();
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(errorLines(outcome.standardOutput), lines);
    QVERIFY(outcome.standardOutput.startsWith("SQL 错误: attempt to write a readonly database\n"));
    QCOMPARE(everything(), before);
}

void HistoryMigrationFailureTest::aViewIsLeftAlone_data()
{
    QTest::addColumn<QByteArray>("column");
    QTest::addColumn<qsizetype>("lines");
    QTest::newRow("model_id") << QByteArray{"'m' AS model_id"} << qsizetype{0};
    QTest::newRow("model_key") << QByteArray{"'m' AS model_key"} << qsizetype{4};
    QTest::newRow("no model") << QByteArray{"'m' AS model"} << qsizetype{1};
}

void HistoryMigrationFailureTest::aViewIsLeftAlone()
{
    QFETCH(const QByteArray, column);
    QFETCH(const qsizetype, lines);
    sql("CREATE VIEW history AS SELECT 1 AS id, 'p' AS prompt, '~/a.png' AS image_path, 1.5 AS created_at, " +
        column);
    QCOMPARE(errorLines(start()), lines);
    QCOMPARE(sql("SELECT * FROM history"), (Rows{{"1", "p", "~/a.png", "1.5", "m"}}));
    QList<HistoryRecord> records;
    standardOutputOf([&] { records = DatabaseManager{folder(), covers()}.fetchAllHistory(); });
    QCOMPARE(records.size(), lines == 0 ? 1 : 0);
}

void HistoryMigrationFailureTest::aColumnNamedInCapitalsIsToldAndUsed()
{
    sql("CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT, image_path TEXT, created_at REAL, "
        "MODEL_ID TEXT); INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm')");
    QCOMPARE(start(), QByteArray{"SQL 错误: duplicate column name: model_id\n"});
    QCOMPARE(history(), (Rows{{"1", "p", "~/a.png", "1.0", "m"}}));
}

QTEST_GUILESS_MAIN(HistoryMigrationFailureTest)
#include "HistoryMigrationFailureTest.moc"
