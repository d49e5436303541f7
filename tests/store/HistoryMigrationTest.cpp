#include "store/HistoryMigration.h"

#include "StoreFixture.h"
#include "store/SqliteConnection.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

class HistoryMigrationTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void columnsAreNamedInTableOrder_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QStringList>("columns");
        QTest::newRow("a table") << u"t"_s << QStringList{u"z"_s, u"B"_s, u"模型 'id'"_s};
        QTest::newRow("its name in capitals") << u"T"_s << QStringList{u"z"_s, u"B"_s, u"模型 'id'"_s};
        QTest::newRow("a view") << u"v"_s << QStringList{u"z"_s, u"two"_s};
        QTest::newRow("missing") << u"missing"_s << QStringList{};
        QTest::newRow("what is no name") << u"t t"_s << QStringList{};
        QTest::newRow("empty") << QString{} << QStringList{};
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

    void anEmptyTableIsMigratedToo_data() { addOlderLayouts(); }

    void anEmptyTableIsMigratedToo()
    {
        QFETCH(const QByteArray, more);
        createHistory(more);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT name FROM pragma_table_info('history')"),
                 (Rows{{"id"}, {"prompt"}, {"image_path"}, {"created_at"}, {"model_id"}}));
        QVERIFY(history().isEmpty());
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

    void itComesBeforeTheBackfillAndOnlyOnce_data() { addOlderLayouts(); }

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

private:
    /// A table with the columns that every version has, and those in `more`.
    void createHistory(const QByteArray &more) const
    {
        sql("CREATE TABLE history (id INTEGER PRIMARY KEY AUTOINCREMENT, prompt TEXT NOT NULL, "
            "image_path TEXT NOT NULL, created_at REAL NOT NULL" +
            more + ")");
    }
    static void addOlderLayouts()
    {
        QTest::addColumn<QByteArray>("more");
        QTest::newRow("model_key") << QByteArray{", model_key TEXT NOT NULL DEFAULT ''"};
        QTest::newRow("no model") << QByteArray{};
    }
};

QUILMORA_TEST(HistoryMigrationTest, runCoreTest)
#include "HistoryMigrationTest.moc"
