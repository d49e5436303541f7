#include "StoreFixture.h"

#include <QMap>
#include <QTest>

#include <functional>
#include <random>
#include <sqlite3.h>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

namespace
{

constexpr qsizetype pageBytes = 4096;
constexpr int rowCount = 40;
constexpr int settings = 0; ///< Stands for the id of their row.

using Damage = std::function<void(QByteArray &bytes, qsizetype page)>;

void fillPage(QByteArray &bytes, qsizetype page, char value, qsizetype count = pageBytes)
{
    bytes.replace(page * pageBytes, count, QByteArray(count, value));
}

void fillWithNoise(QByteArray &bytes, qsizetype page)
{
    std::mt19937 random{static_cast<unsigned>(page)};
    for (qsizetype offset = 0; offset < pageBytes; ++offset) {
        bytes[page * pageBytes + offset] = static_cast<char>(random());
    }
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

bool everyLineIsTheStores(const QByteArray &output)
{
    const QByteArrayList lines = output.split('\n');
    return lines.constLast().isEmpty() &&
           std::all_of(lines.begin(), lines.end() - 1,
                       [](const QByteArray &line) { return line.startsWith("SQL 错误: "); });
}

} // namespace

/// A database of which one page after the other is damaged: the store goes on, and what can still be read
/// stays.
class DamagedDatabaseTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void whatCanStillBeReadStays_data();
    void whatCanStillBeReadStays();

private:
    QByteArray contents(const QString &path) const
    {
        QFile bytes{path};
        return bytes.open(QIODevice::ReadOnly) ? bytes.readAll() : QByteArray{"(unreadable)"};
    }
    /// Settings, and covers with rows of which some take pages of their own.
    QByteArray soundFile() const;
    QStringList coverNames() const { return QDir{covers()}.entryList(QDir::Files); }
};

QByteArray DamagedDatabaseTest::soundFile() const
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
    // Room that was used and given back.
    statements += "INSERT INTO history VALUES (1000, '" + QByteArray(12000, 'q') +
                  "', 'x', 1.0, 'm'); DELETE FROM history WHERE id = 1000";
    sql(statements);
    return contents(file());
}

void DamagedDatabaseTest::whatCanStillBeReadStays_data()
{
    QTest::addColumn<Damage>("damage");
    QTest::newRow("zeros") << Damage{[](QByteArray &bytes, qsizetype page) {
        fillPage(bytes, page, '\0');
    }};
    QTest::newRow("ones") << Damage{[](QByteArray &bytes, qsizetype page) {
        fillPage(bytes, page, '\xff');
    }};
    QTest::newRow("noise") << Damage{fillWithNoise};
    QTest::newRow("half a page of zeros") << Damage{[](QByteArray &bytes, qsizetype page) {
        fillPage(bytes, page, '\0', pageBytes / 2);
    }};
    QTest::newRow("cut off before") << Damage{[](QByteArray &bytes, qsizetype page) {
        bytes.truncate(page * pageBytes);
    }};
    QTest::newRow("cut off within") << Damage{[](QByteArray &bytes, qsizetype page) {
        bytes.truncate(page * pageBytes + 1000);
    }};
}

void DamagedDatabaseTest::whatCanStillBeReadStays()
{
    QFETCH(const Damage, damage);
    const QByteArray sound = soundFile();
    const QStringList names = coverNames();
    const qsizetype pages = sound.size() / pageBytes;
    QVERIFY(pages >= 12);
    QCOMPARE(readableRows(file()).size(), rowCount + 1);
    for (qsizetype page = 0; page < pages; ++page) {
        const QByteArray place = "page " + QByteArray::number(page);
        QByteArray bytes = sound;
        damage(bytes, page);
        samplePictures::write(file(), bytes);
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
        QVERIFY2(outcome.exitCode == 0 && everyLineIsTheStores(outcome.standardOutput), place.constData());
        QCOMPARE(coverNames(), names);
    }
    qInfo("%d pages", static_cast<int>(pages));
}

QTEST_GUILESS_MAIN(DamagedDatabaseTest)
#include "DamagedDatabaseTest.moc"
