#include "store/DatabaseManager.h"
#include "support/ChildProcess.h"
#include "support/DatabaseFile.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// Whether reads give what they give where there is no database.
bool readsGiveDefaults(DatabaseManager &database)
{
    const VolcengineConfig config = database.getConfig();
    return config.apiURL == VolcengineConfig::defaultURL() && config.apiKey.isEmpty() &&
           config.modelID == VolcengineConfig::defaultModelID() && database.fetchAllHistory().isEmpty();
}

/// Starts on `folder`, tries every operation, and ends the process with 0 if reads gave the defaults.
[[noreturn]] void useAndExit(const QString &folder)
{
    childProcess::becomeOrdinaryUser();
    DatabaseManager database{folder, folder + u"/covers"_s};
    database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    database.deleteHistory(1);
    _exit(readsGiveDefaults(database) ? 0 : 1);
}

void setMode(const QString &path, mode_t mode)
{
    QCOMPARE(chmod(path.toUtf8().constData(), mode), 0);
}

} // namespace

class DatabaseManagerFailureTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aFolderInTheDatabasesPlaceIsToldOnce();
    void aFileInTheFoldersPlaceIsToldOnceAndKept();
    void aPlaceWithoutTheRightToWriteIsToldOnce();
    void aFileOfAnotherKindIsToldByEachStatementAndKept();
    void aDatabaseThatMayOnlyBeReadIsStillRead();
    void aTableThatHasGoneIsToldByWritesOnly();
    void aFullDiskIsToldByTheWrite();
    void aNullInATextColumnIsFatal_data();
    void aNullInATextColumnIsFatal();

private:
    QString folder() const { return place->filePath(u"Quilmora"_s); }
    QString file() const { return folder() + u"/quilmora.db"_s; }
    QString covers() const { return place->filePath(u"covers"_s); }
    QByteArray cannotOpen() const { return "无法打开数据库: " + file().toUtf8() + '\n'; }

    std::unique_ptr<QTemporaryDir> place;
};

void DatabaseManagerFailureTest::init()
{
    place = std::make_unique<QTemporaryDir>();
    setMode(place->path(), 0755);
}

void DatabaseManagerFailureTest::cleanup()
{
    place.reset();
}

void DatabaseManagerFailureTest::aFolderInTheDatabasesPlaceIsToldOnce()
{
    QVERIFY(QDir{}.mkpath(file()));
    bool readable = false;
    const QByteArray output = standardOutputOf([&] {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        database.deleteHistory(1);
        readable = readsGiveDefaults(database);
    });
    QCOMPARE(output, cannotOpen());
    QVERIFY(readable);
}

void DatabaseManagerFailureTest::aFileInTheFoldersPlaceIsToldOnceAndKept()
{
    samplePictures::write(folder(), "somebody's");
    setMode(folder(), 0644);
    bool readable = false;
    const QByteArray output = standardOutputOf([&] {
        DatabaseManager database{folder(), covers()};
        readable = readsGiveDefaults(database);
    });
    QCOMPARE(output, cannotOpen());
    QVERIFY(readable);
    QVERIFY(QFileInfo{folder()}.permission(QFile::ReadOther));
}

void DatabaseManagerFailureTest::aPlaceWithoutTheRightToWriteIsToldOnce()
{
    setMode(place->path(), 0555);
    const auto outcome = childProcess::run([this] { useAndExit(folder()); });
    QCOMPARE(outcome.standardOutput, cannotOpen());
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY(!QFileInfo::exists(folder()));
}

void DatabaseManagerFailureTest::aFileOfAnotherKindIsToldByEachStatementAndKept()
{
    const QByteArray text = "这不是数据库 " + QByteArray(2000, 'x');
    samplePictures::write(file(), text);
    bool readable = false;
    QByteArray atStart;
    const QByteArray later = standardOutputOf([&] {
        std::unique_ptr<DatabaseManager> database;
        atStart = standardOutputOf([&] { database = std::make_unique<DatabaseManager>(folder(), covers()); });
        readable = readsGiveDefaults(*database);
        database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    });
    QCOMPARE(atStart, QByteArray{"SQL 错误: file is not a database\n"}.repeated(3));
    QVERIFY(readable);
    QCOMPARE(later, QByteArray{"SQL 错误: file is not a database\n"});
    QFile kept{file()};
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), text);
}

void DatabaseManagerFailureTest::aDatabaseThatMayOnlyBeReadIsStillRead()
{
    {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    }
    setMode(folder(), 0755);
    setMode(file(), 0444);
    const auto outcome = childProcess::run([this] {
        childProcess::becomeOrdinaryUser();
        DatabaseManager database{folder(), covers()};
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        _exit(database.getConfig().apiKey == u"key"_s ? 0 : 1);
    });
    QCOMPARE(outcome.standardOutput, QByteArray{"SQL 错误: attempt to write a readonly database\n"});
    QCOMPARE(outcome.exitCode, 0);
}

void DatabaseManagerFailureTest::aTableThatHasGoneIsToldByWritesOnly()
{
    bool readable = false;
    const QByteArray output = standardOutputOf([&] {
        DatabaseManager database{folder(), covers()};
        databaseFile::run(file(), "DROP TABLE history; DROP TABLE volc_config");
        readable = readsGiveDefaults(database);
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        database.deleteHistory(1);
    });
    QVERIFY(readable);
    QCOMPARE(output, QByteArray{"SQL 错误: no such table: history\n"
                                "SQL 错误: no such table: volc_config\n"
                                "SQL 错误: no such table: history\n"});
}

void DatabaseManagerFailureTest::aFullDiskIsToldByTheWrite()
{
    const auto outcome = childProcess::run([this] {
        DatabaseManager database{folder(), covers()};
        childProcess::limitFileSize(65536);
        database.insertHistory(QString{100000, u'x'}, u"~/a.png"_s, u"m"_s);
        const bool refused = database.fetchAllHistory().isEmpty();
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        _exit(refused && database.fetchAllHistory().size() == 1 ? 0 : 1);
    });
    // Which words SQLite has for it is left to SQLite.
    QVERIFY(outcome.standardOutput.startsWith("SQL 错误: "));
    QCOMPARE(outcome.standardOutput.count('\n'), 1);
    QCOMPARE(outcome.exitCode, 0);
}

void DatabaseManagerFailureTest::aNullInATextColumnIsFatal_data()
{
    QTest::addColumn<QByteArray>("values");
    QTest::addColumn<bool>("fatal");
    QTest::newRow("prompt") << QByteArray{"1, NULL, 'a', 1.0, 'm'"} << true;
    QTest::newRow("path") << QByteArray{"1, 'p', NULL, 1.0, 'm'"} << true;
    QTest::newRow("model") << QByteArray{"1, 'p', 'a', 1.0, NULL"} << true;
    QTest::newRow("none") << QByteArray{"1, '', '', 1.0, ''"} << false;
}

void DatabaseManagerFailureTest::aNullInATextColumnIsFatal()
{
    QFETCH(const QByteArray, values);
    QFETCH(const bool, fatal);
    QVERIFY(QDir{}.mkpath(folder()));
    databaseFile::run(file(), "CREATE TABLE history (id INTEGER PRIMARY KEY AUTOINCREMENT, prompt TEXT, "
                              "image_path TEXT, created_at REAL, model_id TEXT);"
                              "INSERT INTO history VALUES (" +
                                  values + ")");
    const auto outcome = childProcess::run([this] {
        DatabaseManager database{folder(), covers()};
        _exit(database.fetchAllHistory().size() == 1 ? 0 : 1);
    });
    QCOMPARE(outcome.signal, fatal ? SIGABRT : 0);
    QCOMPARE(outcome.exitCode, fatal ? -1 : 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
}

QTEST_GUILESS_MAIN(DatabaseManagerFailureTest)
#include "DatabaseManagerFailureTest.moc"
