#include "StoreFixture.h"
#include "support/DatabaseLocker.h"
#include "support/TestProgram.h"

#include <QMap>

#include <algorithm>
#include <functional>
#include <random>
#include <sqlite3.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

using Action = std::function<void(DatabaseManager &)>;

const QByteArray heldLine{"SQL 错误: database is locked\n"};

constexpr qsizetype pageBytes = 4096;
constexpr int rowCount = 40;
constexpr int settings = 0; ///< Stands for the id of their row.

/// Different in every byte, and the same in every run.
QByteArray noise()
{
    std::mt19937 random{1};
    QByteArray bytes(pageBytes, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    return bytes;
}

/// What SQLite alone can still read of the file: each row of the history and the settings by themselves.
QMap<int, QByteArray> readableRows(const QString &file)
{
    QMap<int, QByteArray> rows;
    sqlite3 *connection = nullptr;
    sqlite3_open_v2(file.toUtf8().constData(), &connection, SQLITE_OPEN_READONLY, nullptr);
    for (int id = settings; id <= rowCount; ++id) {
        const QByteArray sql =
            id == settings
                ? QByteArray{"SELECT api_url || '|' || api_key || '|' || model_id FROM volc_config"}
                : "SELECT prompt || '|' || image_path || '|' || created_at || '|' || model_id "
                  "FROM history WHERE id = " +
                      QByteArray::number(id);
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(connection, sql.constData(), -1, &statement, nullptr) == SQLITE_OK &&
            sqlite3_step(statement) == SQLITE_ROW) {
            const void *text = sqlite3_column_text(statement, 0);
            rows.insert(id, QByteArray{static_cast<const char *>(text), sqlite3_column_bytes(statement, 0)});
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(connection);
    return rows;
}

/// Whether `rows` has everything that `former` had.
bool holdsAll(const QMap<int, QByteArray> &rows, const QMap<int, QByteArray> &former)
{
    for (auto row = former.begin(); row != former.end(); ++row) {
        if (!rows.contains(row.key()) || rows.value(row.key()) != row.value()) {
            qWarning("Row %d is gone or changed", row.key());
            return false;
        }
    }
    return true;
}

} // namespace

/// A database that another process locks, for a second or for longer than anybody waits, and one of which one
/// page after the other is damaged: the store goes on, and what can still be read stays. A copy of the
/// process that takes longer than one such wait is ended as hanging.
class UnusableDatabaseTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aSecondIsWaitedForAtTheStart()
    {
        fill();
        const DatabaseLocker holder{file(), DatabaseLocker::Lock::exclusive, std::chrono::seconds{1}};
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(paths(), (QByteArrayList{stored("a.png"), stored("b.png"), stored("c.png")}));
    }

    void aSecondIsWaitedFor_data()
    {
        const DataRows<Action, QByteArray> row{"action", "outcome"};
        row(
            "settings saved", [](DatabaseManager &database) { database.saveConfig(u"u"_s, u"k2"_s, u"m"_s); },
            "k2 1");
        row(
            "a cover recorded",
            [](DatabaseManager &database) { database.insertHistory(u"p"_s, u"i"_s, u"m"_s); }, "key 2");
        row(
            "a cover removed", [](DatabaseManager &database) { database.deleteHistory(7); }, "key 0");
        row(
            "settings read",
            [](DatabaseManager &database) {
                if (database.getConfig().apiKey != u"key"_s) {
                    qFatal("The settings were not read");
                }
            },
            "key 1");
        row(
            "history read",
            [](DatabaseManager &database) {
                if (database.fetchAllHistory().size() != 1) {
                    qFatal("The history was not read");
                }
            },
            "key 1");
    }

    void aSecondIsWaitedFor()
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

    void theStartWaitsOnceAndTouchesNothing_data()
    {
        const DataRows<QByteArray> row{"change"};
        row("the present layout", {});
        row("an older layout", "ALTER TABLE history RENAME COLUMN model_id TO model_key; UPDATE "
                               "history SET model_key = 'old'");
    }

    void theStartWaitsOnceAndTouchesNothing()
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

    void whileAnotherWritesTheStartReadsAndWaitsOnce()
    {
        fill();
        const Rows before = everything();
        const auto outcome = childProcess::run([this] {
            const DatabaseLocker holder{file(), DatabaseLocker::Lock::writing};
            DatabaseManager database{folder(), covers()};
            _exit(database.getConfig().apiKey == u"key"_s && database.fetchAllHistory().size() == 1 ? 0 : 1);
        });
        // The two covers without a row.
        QCOMPARE(outcome, childProcess::succeeded(heldLine.repeated(2)));
        QCOMPARE(everything(), before);
    }

    void anActionGivesUpAndTheNextOneWorks_data()
    {
        const DataRows<Action, QByteArray> row{"action", "lines"};
        row(
            "a cover recorded",
            [](DatabaseManager &database) { database.insertHistory(u"p"_s, u"i"_s, u"m"_s); }, heldLine);
        row("history read",
            [](DatabaseManager &database) {
                if (!database.fetchAllHistory().isEmpty()) {
                    qFatal("The history was read");
                }
            },
            {});
    }

    void anActionGivesUpAndTheNextOneWorks()
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
        QCOMPARE(outcome, childProcess::succeeded(lines));
    }

    void whatCanStillBeReadStays_data()
    {
        QTest::addColumn<QByteArray>("bytes"); ///< At the beginning of the page.
        QTest::addColumn<qsizetype>("length"); ///< Of the page where the file ends in it, otherwise -1.
        QTest::newRow("zeros") << QByteArray(pageBytes, '\0') << qsizetype{-1};
        QTest::newRow("ones") << QByteArray(pageBytes, '\xff') << qsizetype{-1};
        QTest::newRow("noise") << noise() << qsizetype{-1};
        QTest::newRow("half a page of zeros") << QByteArray(pageBytes / 2, '\0') << qsizetype{-1};
        QTest::newRow("truncated before") << QByteArray{} << qsizetype{0};
        QTest::newRow("truncated within") << QByteArray{} << qsizetype{1000};
    }

    void whatCanStillBeReadStays()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const qsizetype, length);
        makeSoundFile();
        QFile soundFile{file()};
        QVERIFY(soundFile.open(QIODevice::ReadOnly));
        const QByteArray sound = soundFile.readAll();
        const QStringList names = coverNames();
        const qsizetype pages = sound.size() / pageBytes;
        QVERIFY(pages >= 12);
        QCOMPARE(readableRows(file()).size(), rowCount + 1);
        for (qsizetype page = 0; page < pages; ++page) {
            QByteArray damaged = sound;
            damaged.replace(page * pageBytes, bytes.size(), bytes);
            damaged.truncate(length < 0 ? sound.size() : page * pageBytes + length);
            samplePictures::write(file(), damaged);
            const auto before = readableRows(file());

            const auto outcome = childProcess::run([&] {
                DatabaseManager database{folder(), covers()};
                database.fetchAllHistory();
                database.getConfig();
                const bool holdsAfterStart = holdsAll(readableRows(file()), before);
                database.insertHistory(u"new"_s, u"~/new.png"_s, u"m"_s);
                database.saveConfig(u"https://a"_s, u"new key"_s, u"m"_s);
                database.fetchAllHistory();
                auto rows = before;
                rows.remove(settings);
                _exit(holdsAfterStart && holdsAll(readableRows(file()), rows) ? 0 : 1);
            });
            QVERIFY2(outcome.exitCode == 0 && errorCount(outcome.standardOutput) >= 0,
                     qPrintable(u"page %1"_s.arg(page)));
            QCOMPARE(coverNames(), names);
        }
        qInfo("%d pages", static_cast<int>(pages));
    }

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

    /// Settings, and covers with rows of which some take pages of their own.
    void makeSoundFile() const
    {
        start();
        QByteArray statements = "UPDATE volc_config SET api_key = 'key';";
        for (int id = 1; id <= rowCount; ++id) {
            const QByteArray name = "cover_" + QByteArray::number(id) + ".png";
            addCover(QString::fromUtf8(name));
            statements += "INSERT INTO history VALUES (" + QByteArray::number(id) + ", '" +
                          QByteArray(id % 10 == 0 ? 9000 : 500, 'p') + "', '" + stored(name) + "', " +
                          QByteArray::number(1000 + id) + ".5, 'm');";
        }
        // Pages that were used and freed again.
        statements += "INSERT INTO history VALUES (1000, '" + QByteArray(12000, 'q') +
                      "', 'x', 1.0, 'm'); DELETE FROM history WHERE id = 1000";
        sql(statements);
    }

    QStringList coverNames() const { return QDir{covers()}.entryList(QDir::Files); }
};

QUILMORA_TEST(UnusableDatabaseTest, runCoreTest)
#include "UnusableDatabaseTest.moc"
