#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QMap>
#include <QTest>

#include <algorithm>
#include <random>
#include <sqlite3.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace {

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

/// A database of which one page after the other is damaged: the store goes on, and what can still be read
/// stays.
class DamagedDatabaseTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
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

QUILMORA_TEST(DamagedDatabaseTest, runCoreTest)
#include "DamagedDatabaseTest.moc"
