#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QFileInfo>
#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

/// Folders of covers that cannot be listed, and rows that cannot be read or added.
class OrphanBackfillFailureTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNoFolderAddsAndPrintsNothing_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char *kind :
             {"nothing", "file", "pipe", "link to nothing", "link to a file", "link to itself"}) {
            QTest::newRow(kind) << QString::fromUtf8(kind);
        }
    }

    void whatIsNoFolderAddsAndPrintsNothing()
    {
        QFETCH(const QString, kind);
        if (kind == u"file"_s) {
            samplePictures::write(covers(), "somebody's");
        } else if (kind == u"pipe"_s) {
            QVERIFY(QDir{}.mkpath(m_home->path(u"Pictures/Quilmora"_s)));
            QCOMPARE(mkfifo(QFile::encodeName(covers()).constData(), 0600), 0);
        } else if (kind == u"link to nothing"_s) {
            linkCoversTo(m_home->path(u"nothing"_s));
        } else if (kind == u"link to a file"_s) {
            linkCoversTo(samplePictures::write(m_home->path(u"a.png"_s), "x"));
        } else if (kind == u"link to itself"_s) {
            linkCoversTo(covers());
        }
        const auto outcome = childProcess::run([this] {
            const DatabaseManager database{folder(), covers()};
        });
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
        QVERIFY(history().isEmpty());
        QCOMPARE(QFileInfo::exists(m_home->path(u"Pictures"_s)), kind != u"nothing"_s);
    }

    void aFolderThatMayNotBeListedAddsAndPrintsNothing()
    {
        addCover(u"a.png"_s);
        setMode(covers(), 0333);
        openFolder();
        const auto outcome = startAsOrdinaryUser();
        setMode(covers(), 0755);
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
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
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
        QCOMPARE(paths(), QByteArrayList{stored("a.png")});
        open();
        const Timestamp time = m_database->fetchAllHistory().constFirst().createdAt;
        QVERIFY(before <= time && time <= after);
    }

    void aLinkToAFolderIsFollowed()
    {
        samplePictures::write(m_home->path(u"disk/a.png"_s), "x");
        linkCoversTo(m_home->path(u"disk"_s));
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
        const auto outcome = startAsOrdinaryUser();
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput,
                 QByteArray{"SQL 错误: attempt to write a readonly database\n"}.repeated(2));
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
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{"SQL 错误: disk I/O error\n"});
        QCOMPARE(history(), Rows{});
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(sql("SELECT count(DISTINCT image_path), count(*) FROM history"), (Rows{{"60", "60"}}));
    }

    void aTableThatTakesNoRowsIsReportedForEachCover_data()
    {
        QTest::addColumn<QByteArray>("statement");
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("no column for the path") << QByteArray{"TABLE history (id INTEGER PRIMARY KEY, prompt "
                                                              "TEXT, created_at REAL, model_id TEXT)"}
                                                << QByteArray{"table history has no column named image_path"};
        QTest::newRow("a view") << QByteArray{"VIEW history AS SELECT 1 AS id, 'p' AS prompt, '" +
                                              stored("known.png") +
                                              "' AS image_path, 1.0 AS created_at, 'm' AS model_id"}
                                << QByteArray{"cannot modify history because it is a view"};
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

    void aFileThatIsNoDatabaseIsReportedForEachCover()
    {
        samplePictures::write(file(), QByteArray(2000, 'x'));
        addCover(u"a.png"_s);
        addCover(u"b.png"_s);
        // Two tables, the column of the model, two covers.
        QCOMPARE(start(), QByteArray{"SQL 错误: file is not a database\n"}.repeated(5));
    }

private:
    void linkCoversTo(const QString &target) const
    {
        QDir{}.mkpath(m_home->path(u"Pictures/Quilmora"_s));
        if (!QFile::link(target, covers())) {
            qFatal("Cannot make a link");
        }
    }

    /// Makes the folder of the database one that every user may write to.
    void openFolder() const
    {
        QDir{}.mkpath(folder());
        setMode(folder(), 0777);
    }
};

QUILMORA_TEST(OrphanBackfillFailureTest, runCoreTest)
#include "OrphanBackfillFailureTest.moc"
