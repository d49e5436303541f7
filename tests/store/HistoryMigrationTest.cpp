#include "StoreFixture.h"
#include "store/HistoryTable.h"
#include "store/SqliteConnection.h"
#include "support/FailureNote.h"
#include "support/TestProgram.h"

#include <csignal>
#include <limits>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

/// Histories that this version would not have made itself: an older version's, which are migrated, what an
/// interrupted migration leaves, and those of a newer version or another program.
class HistoryMigrationTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void columnsAreNamedInTableOrder_data()
    {
        const DataRows<QString, QStringList> row{"table", "columns"};
        row("a table", u"t"_s, {u"z"_s, u"B"_s, u"模型 'id'"_s});
        row("its name in capitals", u"T"_s, {u"z"_s, u"B"_s, u"模型 'id'"_s});
        row("a view", u"v"_s, {u"z"_s, u"two"_s});
        row("missing", u"missing"_s, {});
        row("what is no name", u"t t"_s, {});
        row("empty", {}, {});
    }

    void columnsAreNamedInTableOrder()
    {
        QFETCH(const QString, table);
        QFETCH(const QStringList, columns);
        sql("CREATE TABLE t (z INTEGER, B, \"模型 'id'\" TEXT); CREATE VIEW v AS SELECT z, 2 AS two FROM t");
        SqliteConnection connection{file()};
        QStringList found;
        const QByteArray output = standardOutputOf([&] { found = tableColumns(connection, table); });
        QCOMPARE(found, columns);
        QCOMPARE(output, QByteArray{});
    }

    void aModelKeyBecomesTheModelIDUnderTheSameIDs()
    {
        createHistory(", model_key TEXT NOT NULL DEFAULT ''");
        sql("INSERT INTO history VALUES (3, 'it''s 😀', '~/a.png', 1700000000.25, 'doubao-3');"
            "INSERT INTO history VALUES (7, '', '', -1.5, '');"
            "INSERT INTO history VALUES (9007199254740993, 'p', '/b.png', 2.0, '模型''s')");
        QCOMPARE(start(), QByteArray{});
        const Rows expected{{"3", "it's 😀", "~/a.png", "1700000000.25", "doubao-3"},
                            {"7", "", "", "-1.5", ""},
                            {"9007199254740993", "p", "/b.png", "2.0", "模型's"}};
        QCOMPARE(history(), expected);
        QCOMPARE(sql("SELECT name, sql FROM sqlite_master WHERE name LIKE '%history%'"),
                 (Rows{{"history", "CREATE TABLE history (\n"
                                   "        id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
                                   "        prompt TEXT NOT NULL,\n"
                                   "        image_path TEXT NOT NULL,\n"
                                   "        created_at REAL NOT NULL,\n"
                                   "        model_id TEXT NOT NULL DEFAULT ''\n"
                                   "    )"}}));
        // Ids go on after the highest.
        open();
        m_database->insertHistory(u"q"_s, u"~/b.png"_s, u"m"_s);
        QCOMPARE(m_database->fetchAllHistory().constFirst().id, 9007199254740994);
    }

    void columnsOfAnotherProgramDoNotHinderTheRebuild()
    {
        createHistory(", rating INTEGER NOT NULL DEFAULT 5, model_key TEXT");
        sql("INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 3, 'm')");
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT * FROM history"), (Rows{{"1", "p", "~/a.png", "1.0", "m"}}));
    }

    void aTableWithoutAModelGetsAnEmptyOne()
    {
        createHistory({});
        sql("INSERT INTO history VALUES (3, 'it''s 😀', '~/a.png', 1700000000.25);"
            "INSERT INTO history VALUES (7, 'p', '/b.png', 2.0)");
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT *, typeof(model_id) FROM history"),
                 (Rows{{"3", "it's 😀", "~/a.png", "1700000000.25", "", "text"},
                       {"7", "p", "/b.png", "2.0", "", "text"}}));
        open();
        m_database->insertHistory(u"q"_s, u"~/c.png"_s, u"m"_s);
        QCOMPARE(m_database->fetchAllHistory().constFirst().modelID, u"m"_s);
    }

    void anEmptyTableIsMigratedToo()
    {
        for (const QByteArray &more : olderLayouts) {
            const FailureNote note{more};
            createHistory(more);
            QCOMPARE(start(), QByteArray{});
            QCOMPARE(sql("SELECT name FROM pragma_table_info('history')"),
                     (Rows{{"id"}, {"prompt"}, {"image_path"}, {"created_at"}, {"model_id"}}));
            QVERIFY(history().isEmpty());
            sql("DROP TABLE history");
        }
    }

    void aTableWithBothColumnsIsLeftAlone()
    {
        createHistory(", model_key TEXT NOT NULL DEFAULT 'k', model_id TEXT NOT NULL DEFAULT 'i'");
        sql("INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'key', 'id')");
        const Rows schema = sql("SELECT sql FROM sqlite_master WHERE name = 'history'");
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT sql FROM sqlite_master WHERE name = 'history'"), schema);
        QCOMPARE(sql("SELECT * FROM history"), (Rows{{"1", "p", "~/a.png", "1.0", "key", "id"}}));
        open();
        QCOMPARE(m_database->fetchAllHistory().constFirst().modelID, u"id"_s);
    }

    void itComesBeforeTheBackfillAndOnlyOnce_data()
    {
        const DataRows<QByteArray> row{"more"};
        row("model_key", olderLayouts[0]);
        row("no model", olderLayouts[1]);
    }

    void itComesBeforeTheBackfillAndOnlyOnce()
    {
        QFETCH(const QByteArray, more);
        createHistory(more);
        sql("INSERT INTO history (id, prompt, image_path, created_at) VALUES (5, 'p', '" + stored("a.png") +
            "', 1.0)");
        addCover(u"a.png"_s);
        addCover(u"b.png"_s);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("b.png")}));
        QCOMPARE(history().constFirst(), (databaseFile::Row{"5", "p", stored("a.png"), "1.0", ""}));
        const Rows before = everything();
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(everything(), before);
    }

    void aRowWithoutAModelKeyLosesTheOldRowsAndIsReportedOnce()
    {
        createHistory(", model_key TEXT");
        sql("INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm');"
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

    void anInterruptedRunLeavesTheOldRowsAside()
    {
        const databaseFile::Row row{"4", "p", "~/a.png", "1.0", "m"};
        const auto startsChangeNothing = [&](const Rows &rows) {
            for (int time = 0; time < 2; ++time) {
                QCOMPARE(start(), QByteArray{});
                QCOMPARE(history(), rows);
                QCOMPARE(sql("SELECT * FROM history_old"), Rows{row});
            }
        };
        // Before the rows were copied, and before the old ones were dropped.
        createHistory(", model_key TEXT", "history_old");
        sql("INSERT INTO history_old VALUES (4, 'p', '~/a.png', 1.0, 'm')");
        startsChangeNothing({});
        sql("INSERT INTO history VALUES (4, 'p', '~/a.png', 1.0, 'm')");
        startsChangeNothing({row});
    }

    void aFormerOldTableIsDroppedAndTheNextStartMigrates()
    {
        createHistory(", model_key TEXT");
        createHistory(", model_key TEXT", "history_old");
        sql("INSERT INTO history_old VALUES (4, 'old', '~/a.png', 1.0, 'm');"
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
        const DataRows<QByteArray, qsizetype> row{"column", "lines"};
        row("model_key", ", model_key TEXT", 4);
        row("no model", "", 1);
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

    void aViewIsLeftAlone()
    {
        const QMap<QByteArray, qsizetype> lines{{"model_id", 0}, {"model_key", 4}, {"model", 1}};
        for (auto column = lines.begin(); column != lines.end(); ++column) {
            const FailureNote note{column.key()};
            sql("CREATE VIEW history AS SELECT 1 AS id, 'p' AS prompt, '~/a.png' AS image_path, "
                "1.5 AS created_at, 'm' AS " +
                column.key());
            QCOMPARE(errorCount(start()), column.value());
            QCOMPARE(sql("SELECT * FROM history"), (Rows{{"1", "p", "~/a.png", "1.5", "m"}}));
            standardOutputOf([this] { open(); });
            QCOMPARE(m_database->fetchAllHistory().size(), column.value() == 0 ? 1 : 0);
            m_database.reset();
            sql("DROP VIEW history");
        }
    }

    void aColumnNamedInCapitalsIsReportedAndUsed()
    {
        sql("CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT, image_path TEXT, created_at REAL, "
            "MODEL_ID TEXT); INSERT INTO history VALUES (1, 'p', '~/a.png', 1.0, 'm')");
        QCOMPARE(start(), QByteArray{"SQL 错误: duplicate column name: model_id\n"});
        QCOMPARE(history(), (Rows{{"1", "p", "~/a.png", "1.0", "m"}}));
    }

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
        const DataRows<QByteArray, bool> row{"values", "fatal"};
        row("prompt", "1, NULL, 'a', 1.0, 'm'", true);
        row("path", "1, 'p', NULL, 1.0, 'm'", true);
        row("model", "1, 'p', 'a', 1.0, NULL", true);
        row("none", "1, '', '', 1.0, ''", false);
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
    /// What the table had beside the columns that every version has.
    inline static const std::array<QByteArray, 2> olderLayouts{", model_key TEXT NOT NULL DEFAULT ''", ""};

    /// A table with the columns that every version has, and those in `more`.
    void createHistory(const QByteArray &more, const QByteArray &name = "history") const
    {
        sql("CREATE TABLE " + name +
            " (id INTEGER PRIMARY KEY AUTOINCREMENT, prompt TEXT NOT NULL, "
            "image_path TEXT NOT NULL, created_at REAL NOT NULL" +
            more + ")");
    }

    Rows historyTables() const { return sql("SELECT name FROM sqlite_master WHERE name LIKE '%history%'"); }

    static constexpr const char *untyped =
        "CREATE TABLE history (id INTEGER PRIMARY KEY, prompt, image_path, created_at, model_id);";
};

QUILMORA_TEST(HistoryMigrationTest, runCoreTest)
#include "HistoryMigrationTest.moc"
