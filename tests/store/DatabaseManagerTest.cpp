#include "store/DatabaseManager.h"

#include "platform/UserFolders.h"
#include "support/ChildProcess.h"
#include "support/DatabaseFile.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// The mode bits of the file at `path`, as an octal text.
QString mode(const QString &path)
{
    struct stat status {
    };
    stat(path.toUtf8().constData(), &status);
    return QString::number(status.st_mode & 0777U, 8);
}

} // namespace

class DatabaseManagerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aFreshUserGetsFolderFileAndDefaultSettings();
    void theTablesAreStoredAsGiven();
    void theFolderIsTheOwnersAlone_data();
    void theFolderIsTheOwnersAlone();
    void aFolderThatIsClosedAlreadyIsLeftAlone();
    void aSecondStartChangesNothing();
    void aMissingSettingsRowIsPutBackAtStart();
    void theSharedInstanceLiesInTheApplicationSupportFolder();
    void standardOutputStaysEmpty();

private:
    QString folder() const { return home->path(u"Library/应用 'data'/Quilmora"_s); }
    QString file() const { return folder() + u"/quilmora.db"_s; }
    QString covers() const { return home->path(u"Pictures/Quilmora/coverimg"_s); }

    std::unique_ptr<TemporaryHome> home;
};

void DatabaseManagerTest::init()
{
    home = std::make_unique<TemporaryHome>();
}

void DatabaseManagerTest::cleanup()
{
    home.reset();
}

void DatabaseManagerTest::aFreshUserGetsFolderFileAndDefaultSettings()
{
    DatabaseManager database{folder(), covers()};
    QVERIFY(QFileInfo{file()}.isFile());
    const VolcengineConfig config = database.getConfig();
    QCOMPARE(config.apiURL, u"https://ark.cn-beijing.volces.com/api/v3/images/generations"_s);
    QCOMPARE(config.apiKey, QString{});
    QCOMPARE(config.modelID, u"doubao-seedream-4-0-250828"_s);
    QVERIFY(database.fetchAllHistory().isEmpty());
    const QList<databaseFile::Row> expected{{"1",
                                             "https://ark.cn-beijing.volces.com/api/v3/images/generations",
                                             "", "doubao-seedream-4-0-250828"}};
    QCOMPARE(databaseFile::run(file(), "SELECT * FROM volc_config"), expected);
}

void DatabaseManagerTest::theTablesAreStoredAsGiven()
{
    {
        const DatabaseManager database{folder(), covers()};
    }
    QCOMPARE(databaseFile::value(file(), "SELECT sql FROM sqlite_master WHERE name = 'volc_config'"),
             QByteArray{"CREATE TABLE volc_config (\n"
                        "    id INTEGER PRIMARY KEY CHECK (id = 1),\n"
                        "    api_url TEXT NOT NULL DEFAULT '',\n"
                        "    api_key TEXT NOT NULL DEFAULT '',\n"
                        "    model_id TEXT NOT NULL DEFAULT ''\n"
                        ")"});
    QCOMPARE(databaseFile::value(file(), "SELECT sql FROM sqlite_master WHERE name = 'history'"),
             QByteArray{"CREATE TABLE history (\n"
                        "    id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
                        "    prompt TEXT NOT NULL,\n"
                        "    image_path TEXT NOT NULL,\n"
                        "    created_at REAL NOT NULL,\n"
                        "    model_id TEXT NOT NULL DEFAULT ''\n"
                        ")"});
    const QList<databaseFile::Row> everything{
        {"table", "history"}, {"table", "sqlite_sequence"}, {"table", "volc_config"}};
    QCOMPARE(databaseFile::run(file(), "SELECT type, name FROM sqlite_master ORDER BY name"), everything);
}

void DatabaseManagerTest::theFolderIsTheOwnersAlone_data()
{
    QTest::addColumn<bool>("existed");
    QTest::newRow("made by the program") << false;
    QTest::newRow("open to others before") << true;
}

void DatabaseManagerTest::theFolderIsTheOwnersAlone()
{
    QFETCH(const bool, existed);
    if (existed) {
        QVERIFY(QDir{}.mkpath(folder()));
        QCOMPARE(chmod(folder().toUtf8().constData(), 0755), 0);
    }
    const mode_t formerMask = umask(0);
    {
        const DatabaseManager database{folder(), covers()};
    }
    umask(formerMask);
    QCOMPARE(mode(folder()), u"700"_s);
    // What others may do in the folders above is not the program's business.
    QVERIFY(mode(home->path(u"Library"_s)) != u"700"_s);
}

void DatabaseManagerTest::aFolderThatIsClosedAlreadyIsLeftAlone()
{
    QVERIFY(QDir{}.mkpath(folder()));
    QCOMPARE(chmod(folder().toUtf8().constData(), 0500), 0);
    standardOutputOf([this] { const DatabaseManager database{folder(), covers()}; });
    QCOMPARE(mode(folder()), u"500"_s);
}

void DatabaseManagerTest::aSecondStartChangesNothing()
{
    {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        database.insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        database.insertHistory(u"q"_s, u"~/b.png"_s, QString{});
    }
    const auto everything = [this] {
        return databaseFile::run(file(), "SELECT * FROM volc_config") +
               databaseFile::run(file(), "SELECT * FROM history") +
               databaseFile::run(file(), "SELECT * FROM sqlite_master") +
               databaseFile::run(file(), "SELECT * FROM sqlite_sequence");
    };
    const QList<databaseFile::Row> before = everything();
    QCOMPARE(before.size(), 7);
    const QByteArray output = standardOutputOf([this] {
        const DatabaseManager database{folder(), covers()};
    });
    QCOMPARE(output, QByteArray{});
    QCOMPARE(everything(), before);
}

void DatabaseManagerTest::aMissingSettingsRowIsPutBackAtStart()
{
    {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    }
    databaseFile::run(file(), "DELETE FROM volc_config");
    {
        const DatabaseManager database{folder(), covers()};
    }
    QCOMPARE(databaseFile::value(file(), "SELECT api_url || api_key || model_id FROM volc_config"),
             (VolcengineConfig::defaultURL() + VolcengineConfig::defaultModelID()).toUtf8());
}

void DatabaseManagerTest::theSharedInstanceLiesInTheApplicationSupportFolder()
{
    // In a copy of the process, because the instance stays until the end.
    const auto outcome = childProcess::run([] {
        DatabaseManager &database = DatabaseManager::shared();
        database.saveConfig(u"https://shared"_s, QString{}, QString{});
        _exit(&database == &DatabaseManager::shared() ? 0 : 1);
    });
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(outcome.standardOutput, QByteArray{});
    const QString path = userFolders::applicationSupport() + u"/Quilmora/quilmora.db"_s;
    QVERIFY(path.startsWith(home->path()));
    QCOMPARE(databaseFile::value(path, "SELECT api_url FROM volc_config"), QByteArray{"https://shared"});
}

void DatabaseManagerTest::standardOutputStaysEmpty()
{
    qsizetype rows = -1;
    const QByteArray output = standardOutputOf([&] {
        DatabaseManager database{folder(), covers()};
        database.saveConfig(u"https://a"_s, u"it's"_s, u"m"_s);
        database.getConfig();
        database.insertHistory(u"it's"_s, u"~/a.png"_s, u"m"_s);
        database.insertHistory(u"p"_s, u"~/b.png"_s, u"m"_s);
        database.deleteHistory(1);
        database.deleteHistory(99);
        rows = database.fetchAllHistory().size();
    });
    QCOMPARE(output, QByteArray{});
    QCOMPARE(rows, 1);
}

QTEST_GUILESS_MAIN(DatabaseManagerTest)
#include "DatabaseManagerTest.moc"
