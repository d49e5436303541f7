#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

/// Histories that cannot be migrated, and what an interrupted migration leaves.
class HistoryMigrationFailureTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aRowWithoutAModelKeyLosesTheOldRowsAndIsReportedOnce()
    {
        sql(tableWithKey("history") +
            "INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm');"
            "INSERT INTO history VALUES (2, 'q', '" +
            stored("b.png") + "', 2.0, NULL)");
        addCover(u"b.png"_s);
        QCOMPARE(start(), QByteArray{"SQL 错误: NOT NULL constraint failed: history.model_id\n"});
        // The cover of a lost row is adopted by the same start.
        QCOMPARE(sql("SELECT prompt, image_path FROM history"),
                 (Rows{{"(历史图片，已自动补录)", stored("b.png")}}));
        QCOMPARE(historyTables(), (Rows{{"history"}}));
        QCOMPARE(start(), QByteArray{});
    }

    void aRunInterruptedBeforeTheCopyLeavesTheOldRowsAside()
    {
        sql(tableWithKey("history_old") + "INSERT INTO history_old VALUES (4, 'p', '~/a.png', 1.0, 'm')");
        for (int time = 0; time < 2; ++time) {
            QCOMPARE(start(), QByteArray{});
            QVERIFY(history().isEmpty());
            QCOMPARE(sql("SELECT * FROM history_old"), (Rows{{"4", "p", "~/a.png", "1.0", "m"}}));
        }
    }

    void aRunInterruptedBeforeTheDropLeavesBothTables()
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

    void aFormerOldTableIsDroppedAndTheNextStartMigrates()
    {
        sql(tableWithKey("history") + tableWithKey("history_old") +
            "INSERT INTO history_old VALUES (4, 'old', '~/a.png', 1.0, 'm');"
            "INSERT INTO history VALUES (9, 'p', '~/b.png', 2.0, 'n')");
        // Renaming, creating and copying fail; dropping does not.
        const QByteArray output = start();
        QCOMPARE(errorCount(output), 3);
        QVERIFY(output.contains(
            "SQL 错误: there is already another table or index with this name: history_old\n"));
        QCOMPARE(sql("SELECT * FROM history"), (Rows{{"9", "p", "~/b.png", "2.0", "n"}}));
        QCOMPARE(historyTables(), (Rows{{"history"}}));
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(history(), (Rows{{"9", "p", "~/b.png", "2.0", "n"}}));
    }

    void aReadOnlyDatabaseKeepsItsOldRows_data()
    {
        QTest::addColumn<QByteArray>("column");
        QTest::addColumn<qsizetype>("lines");
        QTest::newRow("model_key") << QByteArray{", model_key TEXT"} << qsizetype{4};
        QTest::newRow("no model") << QByteArray{} << qsizetype{1};
    }

    void aReadOnlyDatabaseKeepsItsOldRows()
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
        QCOMPARE(errorCount(outcome.standardOutput), lines);
        QVERIFY(outcome.standardOutput.startsWith("SQL 错误: attempt to write a readonly database\n"));
        QCOMPARE(everything(), before);
    }

    void aViewIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("column");
        QTest::addColumn<qsizetype>("lines");
        QTest::newRow("model_id") << QByteArray{"model_id"} << qsizetype{0};
        QTest::newRow("model_key") << QByteArray{"model_key"} << qsizetype{4};
        QTest::newRow("no model") << QByteArray{"model"} << qsizetype{1};
    }

    void aViewIsLeftAlone()
    {
        QFETCH(const QByteArray, column);
        QFETCH(const qsizetype, lines);
        sql("CREATE VIEW history AS SELECT 1 AS id, 'p' AS prompt, '~/a.png' AS image_path, "
            "1.5 AS created_at, 'm' AS " +
            column);
        QCOMPARE(errorCount(start()), lines);
        QCOMPARE(sql("SELECT * FROM history"), (Rows{{"1", "p", "~/a.png", "1.5", "m"}}));
        standardOutputOf([this] { open(); });
        QCOMPARE(m_database->fetchAllHistory().size(), lines == 0 ? 1 : 0);
    }

    void aColumnNamedInCapitalsIsReportedAndUsed()
    {
        sql("CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT, image_path TEXT, created_at REAL, "
            "MODEL_ID TEXT); INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm')");
        QCOMPARE(start(), QByteArray{"SQL 错误: duplicate column name: model_id\n"});
        QCOMPARE(history(), (Rows{{"1", "p", "~/a.png", "1.0", "m"}}));
    }

private:
    static QByteArray tableWithKey(const QByteArray &name)
    {
        return "CREATE TABLE " + name +
               " (id INTEGER PRIMARY KEY AUTOINCREMENT, prompt TEXT NOT NULL, image_path TEXT NOT NULL, "
               "created_at REAL NOT NULL, model_key TEXT);";
    }

    Rows historyTables() const { return sql("SELECT name FROM sqlite_master WHERE name LIKE '%history%'"); }
};

QUILMORA_TEST(HistoryMigrationFailureTest, runCoreTest)
#include "HistoryMigrationFailureTest.moc"
