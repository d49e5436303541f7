#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QFileInfo>

using namespace quilmora;
using namespace quilmora::test;

/// Folders of covers that cannot be listed, and rows that cannot be read or added.
class OrphanBackfillFailureTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoFolderAddsAndPrintsNothing_data()
    {
        const DataRows<Make> row{"make"};
        row("nothing", makeNothing);
        row("a file", fileOf("somebody's"));
        row("a pipe", makePipe);
        row("a link to nothing", linkTo(u"nothing"_s));
        row("a link to a file", linkTo(u"/etc/passwd"_s));
        row("a link to itself", linkTo(u"coverimg"_s));
    }

    void whatIsNoFolderAddsAndPrintsNothing()
    {
        QFETCH(const Make, make);
        QVERIFY(QDir{}.mkpath(m_home->path(u"Pictures/Quilmora"_s)));
        make(covers());
        QCOMPARE(startInChild(), childProcess::succeeded());
        QVERIFY(history().isEmpty());
        QVERIFY(!QFileInfo{covers()}.isDir());
    }

    void aFolderThatMayNotBeListedAddsAndPrintsNothing()
    {
        addCover(u"a.png"_s);
        setMode(covers(), 0333);
        openFolder();
        const auto outcome = startAsOrdinaryUser();
        setMode(covers(), 0755);
        QCOMPARE(outcome, childProcess::succeeded());
        QVERIFY(history().isEmpty());
    }

    void filesThatMayNotBeLookedAtAreDatedNow()
    {
        addCover(u"a.png"_s);
        setMode(covers(), 0444);
        openFolder();
        const Timestamp before = now();
        const auto outcome = startAsOrdinaryUser();
        const Timestamp after = now();
        setMode(covers(), 0755);
        QCOMPARE(outcome, childProcess::succeeded());
        QCOMPARE(paths(), QByteArrayList{stored("a.png")});
        open();
        const Timestamp time = m_database->fetchAllHistory().constFirst().createdAt;
        QVERIFY(before <= time && time <= after);
    }

    void aLinkToAFolderIsFollowed()
    {
        samplePictures::write(m_home->path(u"disk/a.png"_s), "x");
        QVERIFY(QDir{}.mkpath(m_home->path(u"Pictures/Quilmora"_s)));
        linkTo(m_home->path(u"disk"_s))(covers());
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(paths(), QByteArrayList{stored("a.png")});
    }

    void aReadOnlyDatabaseIsReportedForEachCover()
    {
        start();
        addCover(u"a.png"_s);
        addCover(u"b.png"_s);
        setMode(folder(), 0755);
        setMode(file(), 0444);
        QCOMPARE(startAsOrdinaryUser(),
                 childProcess::succeeded(
                     QByteArray{"SQL 错误: attempt to write a readonly database\n"}.repeated(2)));
        QVERIFY(history().isEmpty());
    }

    void aRefusedRowDoesNotStopTheOthers()
    {
        start();
        sql("CREATE TRIGGER refuse BEFORE INSERT ON history WHEN NEW.image_path LIKE '%b.png' "
            "BEGIN SELECT RAISE(ABORT, 'not this one'); END");
        for (const QString &name : {u"a.png"_s, u"b.png"_s, u"c.png"_s}) {
            addCover(name);
        }
        QCOMPARE(start(), QByteArray{"SQL 错误: not this one\n"});
        QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("c.png")}));
    }

    void onAFullDiskNoneIsAddedAndTheNextStartAddsAll()
    {
        start();
        constexpr int count = 60;
        for (int number = 0; number < count; ++number) {
            addCover(u"%1.png"_s.arg(number));
        }
        const qint64 size = QFileInfo{file()}.size();
        const auto outcome = childProcess::run([this, size] {
            childProcess::limitFileSize(size);
            const DatabaseManager database{folder(), covers()};
        });
        QCOMPARE(outcome, childProcess::succeeded(QByteArray{"SQL 错误: disk I/O error\n"}));
        QCOMPARE(history(), Rows{});
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT count(DISTINCT image_path), count(*) FROM history"), (Rows{{"60", "60"}}));
    }

    void aTableThatTakesNoRowsIsReportedForEachCover_data()
    {
        const DataRows<QByteArray, QByteArray> row{"statement", "message"};
        row("no column for the path",
            "TABLE history (id INTEGER PRIMARY KEY, prompt "
            "TEXT, created_at REAL, model_id TEXT)",
            "table history has no column named image_path");
        row("a view",
            QByteArray{"VIEW history AS SELECT 1 AS id, 'p' AS prompt, '" + stored("known.png") +
                       "' AS image_path, 1.0 AS created_at, 'm' AS model_id"},
            "cannot modify history because it is a view");
    }

    void aTableThatTakesNoRowsIsReportedForEachCover()
    {
        QFETCH(const QByteArray, statement);
        QFETCH(const QByteArray, message);
        sql("CREATE " + statement);
        addCover(u"a.png"_s);
        addCover(u"b.png"_s);
        if (statement.contains("known.png")) {
            addCover(u"known.png"_s);
        }
        QCOMPARE(start(), QByteArray{"SQL 错误: " + message + '\n'}.repeated(2));
    }

    void aRowWithoutAPathIsSkipped()
    {
        sql("CREATE TABLE history (id INTEGER PRIMARY KEY, prompt TEXT, image_path TEXT, created_at REAL, "
            "model_id TEXT); INSERT INTO history VALUES (1, 'p', NULL, 1.0, 'm');"
            "INSERT INTO history VALUES (2, 'p', '" +
            stored("a.png") + "', 1.0, 'm')");
        addCover(u"a.png"_s);
        addCover(u"b.png"_s);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT image_path FROM history WHERE id > 2"), (Rows{{stored("b.png")}}));
    }

    void aHistoryThatCannotBeReadToItsEndAddsNothing()
    {
        start();
        sql("WITH RECURSIVE counter(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM counter WHERE n < 2000) "
            "INSERT INTO history SELECT n, 'p', '" +
            stored("") + "' || n || '.png', 1.0, 'm' FROM counter");
        addCover(u"1.png"_s);
        addCover(u"2000.png"_s);
        QCOMPARE(start(), QByteArray{});

        QFile database{file()};
        QVERIFY(database.open(QIODevice::ReadWrite));
        constexpr qint64 page = 4096;
        QVERIFY(database.size() > 20 * page);
        QVERIFY(database.seek(database.size() / 2 / page * page));
        QCOMPARE(database.write(QByteArray(page, '\xff')), page);
        database.close();

        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT id FROM history WHERE id >= 2000"), (Rows{{"2000"}}));
    }

private:
    /// Makes the folder of the database one that every user may write to.
    void openFolder() const
    {
        QDir{}.mkpath(folder());
        setMode(folder(), 0777);
    }
};

QUILMORA_TEST(OrphanBackfillFailureTest, runCoreTest)
#include "OrphanBackfillFailureTest.moc"
